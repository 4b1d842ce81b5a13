#include <templates/TemplateKind.h>

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace {

constexpr std::array<TemplateFile, 8> files{{
    {u"Kassenbon.pld", TemplateKind::Bon, u"Kassenbon"},
    {u"Quittung.pld", TemplateKind::Form, u"Quittung"},
    {u"Rechnung.pld", TemplateKind::Form, u"Rechnung"},
    {u"Angebot.pld", TemplateKind::Form, u"Angebot"},
    {u"Lieferschein.pld", TemplateKind::Form, u"Lieferschein"},
    {u"Gutschein.pld", TemplateKind::Voucher, u"Gutschein"},
    {u"Kassenabschluss.pld", TemplateKind::Closing, u"Kassenabschluss"},
    {u"Warenankauf.pld", TemplateKind::Purchase, u"Warenankauf"},
}};

} // namespace

std::span<const TemplateFile> templateFiles() { return files; }

const TemplateFile* templateFileOf(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    const auto at = std::ranges::find_if(files, [&](const TemplateFile& file) {
        const qsizetype ending = file.name.lastIndexOf(u'.'), stem = file.document.size();
        return name.endsWith(file.name.sliced(ending), Qt::CaseInsensitive) &&
               name.startsWith(file.document, Qt::CaseInsensitive) &&
               (name.size() == file.name.size() || name.at(stem) == u'-');
    });
    return at == files.end() ? nullptr : &*at;
}

std::optional<TemplateKind> kindOfFile(const QString& path) {
    if (const TemplateFile* file = templateFileOf(path)) return file->kind;
    return {};
}
