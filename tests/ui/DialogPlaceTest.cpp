#include <support/ScriptedForms.h>
#include <ui/AmountLabel.h>
#include <ui/DialogPlace.h>
#include <ui/PictureLabel.h>
#include <ui/Theme.h>

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(PlaceDialogTest, CoversTheLessImportantFirstAndStaysOnTheScreen) {
    const QRect screen(100, 50, 1000, 700);
    const QRect total(900, 60, 190, 290), lines(100, 250, 700, 90), list(100, 60, 1000, 290);
    const auto place = [&](const QSize& size) {
        return QRect(PlaceDialog(size, screen, {total, lines, list}), size);
    };
    for (const QSize& size : {QSize(300, 200), QSize(990, 390)}) {
        const QRect at = place(size);
        EXPECT_TRUE(screen.contains(at));
        EXPECT_FALSE(at.intersects(list)) << size.width();
    }
    const QRect high = place({600, 395}); // too high to lie below the list, not below its last lines
    EXPECT_TRUE(screen.contains(high));
    EXPECT_FALSE(high.intersects(total) || high.intersects(lines));
    const QRect higher = place({600, 600});
    EXPECT_TRUE(screen.contains(higher));
    EXPECT_FALSE(higher.intersects(total));
    EXPECT_TRUE(screen.contains(place({990, 690})));
    EXPECT_EQ(screen.topLeft(), place({2000, 2000}).topLeft()) << "what is too large begins on the screen";
    EXPECT_EQ(screen.center(), QRect(PlaceDialog({101, 101}, screen, {}), QSize(101, 101)).center());
}

TEST(DialogPlaceTest, DialogsOfAFormWithAWishBelongToIt) {
    QWidget form;
    form.setGeometry(20, 30, 800, 600);
    const QRect kept(20, 30, 800, 300);
    new DialogPlace(&form, [&] { return QList<QRect>{kept}; });
    showForm(form);
    const auto shown = [](QDialog& dialog) {
        dialog.resize(400, 200);
        DialogPlace::prepare(dialog);
        dialog.show();
        QApplication::processEvents();
        return dialog.geometry();
    };
    QDialog first(&form), second(&first), stray;
    for (QDialog* dialog : {&first, &second, &stray}) {
        EXPECT_FALSE(shown(*dialog).intersects(kept));
        EXPECT_TRUE(dialog->windowFlags().testFlag(Qt::FramelessWindowHint));
    }
    second.resize(420, 260); // it grows when it gets a longer text
    EXPECT_FALSE(second.geometry().intersects(kept));
    second.showMinimized();
    EXPECT_TRUE(waitFor([&] { return !second.isMinimized(); })) << "a till behind it would be dead";
    QWidget elsewhere;
    QDialog other(&elsewhere);
    shown(other);
    EXPECT_FALSE(other.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_FALSE(other.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
}

TEST(AmountLabelTest, KeepsEveryDigitOfAnAmount) {
    Theme::Apply();
    QWidget form;
    QVBoxLayout column(&form);
    AmountLabel label;
    label.setProperty("role", u"total"_s);
    QLineEdit box;
    box.setProperty("role", u"total"_s);
    column.addWidget(&label);
    column.addWidget(&box);
    FitLetters(box);
    form.resize(260, 200);
    showForm(form);
    const int largest = Theme::Current().total;
    for (const QString& amount : {u"7,23"_s, u"1.234.567,89"_s, u"-100.000,00"_s, u"0,00"_s}) {
        label.setText(amount);
        box.setText(amount);
        QApplication::processEvents();
        const QFontMetrics letters(label.shownFont());
        EXPECT_LE(letters.horizontalAdvance(amount), label.contentsRect().width());
        EXPECT_LE(box.fontMetrics().horizontalAdvance(amount), box.width() - 24);
        if (amount.size() == 4) {
            EXPECT_EQ(largest, label.shownFont().pixelSize());
            EXPECT_EQ(largest, box.font().pixelSize());
        }
    }
    EXPECT_EQ(260, form.width());
}

TEST(PictureLabelTest, APictureGoesWhenThereIsNoneOrABrokenOne) {
    const QTemporaryDir folder;
    const QString good = folder.filePath(u"gut.bmp"_s), broken = folder.filePath(u"kaputt.bmp"_s);
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    ASSERT_TRUE(image.save(good));
    QFile file(broken);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("BM, aber kein Bild") > 0);
    file.close();
    PictureLabel label;
    label.resize(100, 100);
    for (const QString& next : {QString(), broken}) {
        label.showPicture(good, {});
        EXPECT_FALSE(label.pixmap().isNull());
        label.showPicture(next, {});
        EXPECT_TRUE(label.pixmap().isNull()) << next.toStdString();
    }
}

} // namespace
