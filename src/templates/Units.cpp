#include <templates/Units.h>

QSizeF paperSize(const PropertiesList& list) {
    switch (list.Choice(u"page_size")) {
    case 1:
        return {210, 297};
    case 2:
        return {148, 210};
    case 3:
        return QSizeF(list.Number(u"page_width"), list.Number(u"page_height")) * (twipsPerPaper * mmPerTwip);
    default:
        return {};
    }
}

QSizeF naturalSize(const QImage& picture) {
    if (picture.isNull()) return {};
    return {1000.0 * picture.width() / picture.dotsPerMeterX(),
            1000.0 * picture.height() / picture.dotsPerMeterY()};
}
