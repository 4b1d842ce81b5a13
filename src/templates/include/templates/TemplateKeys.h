#pragma once

#include <templates/PropertiesList.h>
#include <templates/TemplateKind.h>

#include <QStringView>

#include <optional>
#include <span>

/// A property that the renderers know.
struct TemplateKey {
    QStringView key;
    PropertyType type;
    QStringView
        uses; ///< the kinds that read it, a letter each: F form, A purchase, B receipt, G voucher, K closing
    QStringView caption;
    QStringView description;

    [[nodiscard]] bool isUsedBy(TemplateKind kind) const;
};

/// All of them, in the order of a page from top to bottom; a template holds those of its kind in this order.
[[nodiscard]] std::span<const TemplateKey> templateKeys();
/// nullptr for a key that no renderer knows.
[[nodiscard]] const TemplateKey* findTemplateKey(QStringView key);

/// How the grid shows numbers of this type: "0.0 cm", "0.0 pt", empty for all others.
[[nodiscard]] QString formatOf(PropertyType type);
/// Captions of the values 1, 2, 3; empty for a key that is no choice.
[[nodiscard]] QStringList choicesOf(const TemplateKey& key);

/// Captions of the part of the page to which a key belongs, e.g. "Kopfzeile" for "kopfzeile_left".
[[nodiscard]] QString groupOf(QStringView key);

/// The kind whose keys a list has, for a file whose name tells none: the one with most keys when it has those
/// of more than one. std::nullopt when no kind's keys are complete, but for the one that a form can do
/// without.
[[nodiscard]] std::optional<TemplateKind> kindOfKeys(const PropertiesList& list);

/// Whether a value has any effect at present: the free paper size only with `page_size` 3, `page_font` only
/// without the printer's own font, `page_fontname` and `page_fontsize` only with it.
[[nodiscard]] bool isInForce(const PropertiesList& list, QStringView key);

/// Adds `tabelle_bestellnummer_width`, which a form can do without, where it is missing. True when it was.
bool addOrderNumberWidth(PropertiesList& list);
