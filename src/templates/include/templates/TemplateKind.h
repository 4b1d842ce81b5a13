#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <span>

/// What a print template lays out. The values are those under which the designer is asked for one.
enum class TemplateKind {
    Form = 0,     ///< invoice, offer, delivery note, receipt as a form
    Bon = 1,      ///< receipt on the receipt printer
    Voucher = 2,  ///< voucher
    Closing = 3,  ///< closing slip, interim and closing report
    Purchase = 4, ///< second-hand purchase form
};

struct TemplateFile {
    QStringView name; ///< "Rechnung.pld"
    TemplateKind kind;
    QStringView document; ///< what a person calls it: "Rechnung"
};

/// The eight templates of a shop, in the order in which they are offered.
[[nodiscard]] std::span<const TemplateFile> templateFiles();

/// The template that a file is, told by its name, with or without a folder, in any case. A variant carries
/// the name of its document before a hyphen: "Kassenbon-58mm.pld" is a "Kassenbon.pld". nullptr for another
/// name.
[[nodiscard]] const TemplateFile* templateFileOf(const QString& path);

/// The kind of that template.
[[nodiscard]] std::optional<TemplateKind> kindOfFile(const QString& path);
