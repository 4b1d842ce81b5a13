#include <ui/Areas.h>
#include <ui/Form.h>
#include <ui/Pointer.h>

#include <algorithm>

void Areas::add(const QString& name, Make make) { m_areas.push_back({name, std::move(make), {}}); }

void Areas::show(const QString& name) {
    const auto area =
        std::find_if(m_areas.begin(), m_areas.end(), [&](const Area& a) { return a.name == name; });
    if (area == m_areas.end()) return;
    const WaitCursor wait;
    if (area->form.isNull()) area->form = area->make();
    area->form->setWindowState(area->form->windowState() & ~Qt::WindowMinimized);
    area->form->show();
    area->form->raise();
    area->form->activateWindow();
}

bool Areas::closeAll() {
    bool all = true;
    for (const Area& area : m_areas)
        all = (area.form.isNull() || area.form->close()) && all;
    return all;
}
