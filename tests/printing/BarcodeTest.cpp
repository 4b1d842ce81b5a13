#include "Paper.h"

#include <printing/Beleg.h>
#include <session/Globals.h>
#include <support/ScriptedDialogs.h>

#include <QLibrary>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The barcode of a voucher, as a scanner reads it from what a receipt printer burns.

namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::Not;

/// What the reader for scanners finds in a picture; it is a library of the system that only this test needs.
QStringList readBarcodes(const QImage& picture) {
    QLibrary reader(u"zbar"_s, 0);
    const auto call = [&]<typename Function>(const char* name, Function*) {
        return reinterpret_cast<Function*>(reader.resolve(name));
    };
    using New = void*();
    using Free = void(void*);
    const auto newScanner = call("zbar_image_scanner_create", static_cast<New*>(nullptr));
    if (newScanner == nullptr) {
        ADD_FAILURE() << "no reader: " << reader.errorString().toStdString();
        return {};
    }
    using SetFormat = void(void*, unsigned long);
    using SetSize = void(void*, unsigned, unsigned);
    using SetData = void(void*, const void*, unsigned long, void*);
    using Scan = int(void*, void*);
    using Next = const void*(const void*);
    using Data = const char*(const void*);
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    QByteArray bytes;
    for (int y = 0; y < grey.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(grey.constScanLine(y)), grey.width());
    void* scanner = newScanner();
    void* image = call("zbar_image_create", static_cast<New*>(nullptr))();
    constexpr unsigned long y800 = 0x30303859;
    call("zbar_image_set_format", static_cast<SetFormat*>(nullptr))(image, y800);
    call("zbar_image_set_size", static_cast<SetSize*>(nullptr))(image, unsigned(grey.width()),
                                                                unsigned(grey.height()));
    call("zbar_image_set_data", static_cast<SetData*>(nullptr))(image, bytes.constData(), ulong(bytes.size()),
                                                                nullptr);
    call("zbar_scan_image", static_cast<Scan*>(nullptr))(scanner, image);
    QStringList found;
    const auto next = call("zbar_symbol_next", static_cast<Next*>(nullptr));
    const void* symbol = call("zbar_image_first_symbol", static_cast<Next*>(nullptr))(image);
    for (; symbol != nullptr; symbol = next(symbol))
        found << QString::fromLatin1(call("zbar_symbol_get_data", static_cast<Data*>(nullptr))(symbol));
    call("zbar_image_destroy", static_cast<Free*>(nullptr))(image);
    call("zbar_image_scanner_destroy", static_cast<Free*>(nullptr))(scanner);
    return found;
}

class VoucherBarcode : public testing::Test, protected PaperShop {
  protected:
    VoucherBarcode() { gGutscheinBarcode = true; }
    ~VoucherBarcode() override { gGutscheinBarcode = false; }
    /// On free paper of this width, with margins of `margin` centimetres.
    QByteArray print(int number, double width, double margin) {
        vorlage(u"Gutschein.pld"_s, TemplateKind::Voucher, [&](PropertiesList& list) {
            list.setValue(u"page_size", 3);
            list.setValue(u"page_height", 60.0);
            list.setValue(u"page_width", width / 0.85); // ten of the template are 8.5 cm
            for (const char16_t* side : {u"page_marginleft", u"page_marginright"})
                list.setValue(side, margin / 0.96);
        });
        printers.jobs.clear();
        Print_Gutschein(number, u"Fest"_s, Currency::fromInteger(50));
        return printers.jobs.empty() ? QByteArray() : printers.jobs.back().pdf;
    }

    ScriptedDialogs dialogs;
};

TEST_F(VoucherBarcode, IsReadFromEveryRollThatCanHoldIt) {
    constexpr int receiptPrinter = 203; // dots per inch
    for (const double width : {8.0, 5.8}) {
        for (const int number : {1, 17, 12345678, 2147483647}) {
            const QByteArray pdf = print(number, width, 0.4);
            const QString code = u"%1"_s.arg(number, 8, 10, QChar(u'0'));
            EXPECT_EQ(readBarcodes(PdfImage(pdf, 0, receiptPrinter)), QStringList{code})
                << width << ' ' << number;
            EXPECT_EQ(pdfLines(pdf).last(), code) << "for people";
        }
    }
    // Narrower than the smallest bars: the voucher is printed without.
    EXPECT_THAT(pdfLines(print(17, 4, 0.9)), Not(Contains(u"00000017"_s)));
    gGutscheinBarcode = false;
    EXPECT_THAT(pdfLines(print(17, 8, 0.4)), Not(Contains(u"00000017"_s)));
}

} // namespace
