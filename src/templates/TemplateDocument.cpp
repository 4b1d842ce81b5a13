#include <templates/Shipped.h>
#include <templates/TemplateDocument.h>
#include <templates/TemplateKeys.h>
#include <text/RuntimeError.h>

#include <QFileInfo>

#include <optional>
#include <utility>

namespace {

constexpr std::size_t mostSteps = 500;

/// The key of the only property in which two lists differ, empty otherwise.
QString differenceOf(const PropertiesList& a, const PropertiesList& b) {
    QString key;
    if (a.properties().size() != b.properties().size()) return {};
    for (std::size_t i = 0; i < a.properties().size(); ++i) {
        const Property &x = a.properties()[i], &y = b.properties()[i];
        if (x == y) continue;
        if (!key.isEmpty() || x.key != y.key) return {};
        key = x.key;
    }
    return key;
}

/// One of the files that a shop prints with, not a variant of it.
const TemplateFile* shopFileOf(const QString& path) {
    const TemplateFile* file = templateFileOf(path);
    return file && QFileInfo(path).fileName().compare(file->name, Qt::CaseInsensitive) == 0 ? file : nullptr;
}

/// A file of the shop is what its name says. Of any other the keys tell more than a name that merely begins
/// like one.
std::optional<TemplateKind> kindOf(const QString& path, const PropertiesList& list) {
    if (const TemplateFile* file = shopFileOf(path)) return file->kind;
    if (const auto kind = kindOfKeys(list)) return kind;
    return kindOfFile(path);
}

} // namespace

TemplateDocument::Opened TemplateDocument::open(const QString& path) {
    PropertiesList list;
    if (!list.Load(path)) return Opened::NotLoaded;
    const auto kind = kindOf(path, list);
    if (!kind) return Opened::NoTemplate;
    m_path = path;
    m_kind = *kind;
    m_list = m_saved = std::move(list);
    m_before.clear();
    m_after.clear();
    endStep();
    const bool isShopForm = shopFileOf(path) && m_kind == TemplateKind::Form;
    if (isShopForm && addOrderNumberWidth(m_list) && m_list.Save(path)) m_saved = m_list;
    emit changed({});
    return Opened::Yes;
}

bool TemplateDocument::save() {
    endStep();
    if (!m_list.Save(m_path)) return false;
    m_saved = m_list;
    emit saved();
    return true;
}

bool TemplateDocument::saveAs(const QString& path) {
    if (!m_list.Save(path)) return false;
    endStep();
    m_path = path;
    m_kind = kindOf(path, m_list).value_or(m_kind);
    m_saved = m_list;
    emit saved();
    return true;
}

void TemplateDocument::setValue(QStringView key, PropertyValue value) {
    const Property* property = m_list.find(key);
    if (property == nullptr) RaiseInvalidCall();
    if (property->value == value) return;
    PropertiesList next = m_list;
    next.setValue(key, std::move(value));

    const bool grows = property->type == PropertyType::Cm || property->type == PropertyType::Point ||
                       property->type == PropertyType::Text;
    if (!grows || m_growing != key) remember();
    m_growing = grows ? key.toString() : QString();
    m_list = std::move(next);
    emit changed(key.toString());
}

void TemplateDocument::undo() {
    if (m_before.empty()) return;
    m_after.push_back(m_list);
    PropertiesList list = std::move(m_before.back());
    m_before.pop_back();
    replace(std::move(list));
}

void TemplateDocument::redo() {
    if (m_after.empty()) return;
    m_before.push_back(m_list);
    PropertiesList list = std::move(m_after.back());
    m_after.pop_back();
    replace(std::move(list));
}

void TemplateDocument::revert() {
    if (!isModified()) return;
    remember();
    replace(m_saved);
}

bool TemplateDocument::hasShipped() const { return !shippedTemplateFor(m_path).isEmpty(); }

bool TemplateDocument::restoreShipped() {
    PropertiesList list;
    if (!hasShipped() || !list.Load(shippedTemplateFor(m_path))) return false;
    if (list == m_list) return true;
    remember();
    replace(std::move(list));
    return true;
}

void TemplateDocument::remember() {
    m_before.push_back(m_list);
    if (m_before.size() > mostSteps) m_before.erase(m_before.begin());
    m_after.clear();
}

void TemplateDocument::replace(PropertiesList list) {
    const QString key = differenceOf(m_list, list);
    m_list = std::move(list);
    endStep();
    emit changed(key);
}
