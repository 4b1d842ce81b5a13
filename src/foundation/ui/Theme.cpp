#include <session/Globals.h>
#include <ui/Theme.h>

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QColor fromBgr(int bgr) { return {bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF}; }

double luminance(const QColor& c) {
    const auto linear = [](double v) {
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

bool isDark(const QColor& c) { return luminance(c) < 0.18; }

/// Before the colours of the shop are loaded (splash, failures at start) the delivered set is in force.
Theme fromSession(double scale) {
    if ((gColorBack1 | gColorBack2 | gColorBack3 | gColorBack4) == 0)
        return Theme::FromColors(13813442, 16777215, 16118256, 9533303, scale);
    return Theme::FromColors(gColorBack1, gColorBack2, gColorBack3, gColorBack4, scale);
}

Theme& current() {
    static Theme theme = fromSession(1);
    return theme;
}

} // namespace

double Theme::Contrast(const QColor& a, const QColor& b) {
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor Theme::Mix(const QColor& a, const QColor& b, double part) {
    const auto mix = [part](int x, int y) { return static_cast<int>(std::lround(x + (y - x) * part)); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

QColor Theme::Readable(const QColor& wanted, const QColor& surface, double ratio) {
    // The pole that gives more contrast always reaches 4.5 : 1, whatever the surface is.
    const QColor pole = Contrast(Qt::black, surface) >= Contrast(Qt::white, surface) ? Qt::black : Qt::white;
    for (int step = 0; step <= 20; ++step) {
        const QColor c = Mix(wanted, pole, step / 20.0);
        if (Contrast(c, surface) >= ratio) return c;
    }
    return pole;
}

Theme Theme::FromColors(int back, int fore, int panelColour, int titleColour, double scale) {
    Theme t;
    t.page = fromBgr(back);
    t.panel = fromBgr(panelColour);
    const bool dark = isDark(t.panel);
    const QColor ink = dark ? QColor(0xF2, 0xF3, 0xF8) : QColor(0x1B, 0x1D, 0x2E);
    t.field = dark ? Mix(t.panel, Qt::white, 0.08) : QColor(Qt::white);
    t.header = Mix(t.field, t.panel, 0.45);
    t.border = Mix(t.panel, ink, 0.16);
    t.shadow = Mix(t.panel, dark ? QColor(Qt::black) : ink, 0.26);

    // A title bar keeps its hue and gives way in lightness until the foreground can be read on it; a
    // foreground that lies too near for that gives way itself.
    const QColor wantedFore = fromBgr(fore);
    t.title = fromBgr(titleColour);
    for (int step = 0; step < 12 && Contrast(t.title, wantedFore) < 6.0; ++step)
        t.title = Mix(t.title, isDark(wantedFore) ? Qt::white : Qt::black, 0.04);
    t.titleText = Readable(wantedFore, t.title);

    t.accent = dark ? QColor(0x3A, 0x6F, 0xD0) : QColor(0x2D, 0x5D, 0xB3);
    t.accentText = Readable(Qt::white, t.accent);
    t.selection = Mix(t.field, t.accent, dark ? 0.45 : 0.17);

    // One ink for all surfaces a form writes on: darkened or lightened until the worst of them is readable.
    // The page may be of the other kind than the panels (a dark page with light panels); it is then brought
    // near enough.
    t.text = ink;
    for (const QColor& s : {t.panel, t.field, t.header, t.selection})
        t.text = Readable(t.text, s);
    while (Contrast(t.text, t.page) < 4.5)
        t.page = Mix(t.page, t.panel, 0.15);
    t.muted = Mix(t.text, t.panel, 0.32);
    for (const QColor& s : {t.panel, t.field, t.header, t.selection, t.page})
        t.muted = Readable(t.muted, s);
    t.warning = QColor(0xB0, 0x2A, 0x2A);
    for (const QColor& s : {t.panel, t.field})
        t.warning = Readable(t.warning, s);
    t.warningText = Readable(Qt::white, t.warning);

    scale = std::clamp(scale, 1.0, 2.0);
    const auto px = [scale](double v) { return static_cast<int>(std::lround(v * scale)); };
    t.small = px(13);
    t.normal = px(16);
    t.large = px(26);
    t.total = px(56);
    t.keyHeight = px(56);
    t.gap = px(8);
    return t;
}

const Theme& Theme::Current() { return current(); }

QFont Theme::font(Size size, int weight) const {
    QFont f;
    f.setFamilies({u"Inter"_s, u"Noto Sans"_s, u"Segoe UI"_s, u"DejaVu Sans"_s});
    f.setStyleHint(QFont::SansSerif);
    f.setPixelSize(size == Size::Small   ? small
                   : size == Size::Large ? large
                   : size == Size::Total ? total
                                         : normal);
    f.setWeight(QFont::Weight(weight));
    return f;
}

QPalette Theme::palette() const {
    QPalette p;
    p.setColor(QPalette::Window, page);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, field);
    p.setColor(QPalette::AlternateBase, header);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::PlaceholderText, muted);
    p.setColor(QPalette::Button, field);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, accentText);
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, accentText);
    p.setColor(QPalette::ToolTipBase, title);
    p.setColor(QPalette::ToolTipText, titleText);
    p.setColor(QPalette::Link, Readable(accent, panel));
    p.setColor(QPalette::Light, field);
    p.setColor(QPalette::Mid, border);
    p.setColor(QPalette::Dark, shadow);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText,
                      QPalette::HighlightedText})
        p.setColor(QPalette::Disabled, role, muted);
    p.setColor(QPalette::Disabled, QPalette::Highlight, header);
    return p;
}

QString Theme::styleSheet() const {
    // Boxes take their ink from the palette: a colour told here would show placeholders with half of it.
    QString css = uR"(
* { font-family: "Inter", "Noto Sans", "Segoe UI", "DejaVu Sans"; font-size: %normal%px; }
QMainWindow { background: %page%; }
QDialog { background: %panel%; border: 2px solid %title%; }
QLabel { color: %text%; background: transparent; }
QLabel[role~="muted"] { color: %muted%; }
QLabel[role~="title"] { color: %titleText%; font-weight: 600; }
QLabel[role~="headerInfo"] { color: %titleText%; }
QLabel[role~="warning"] { color: %warning%; }
QLabel[role~="alarm"] { color: %warningText%; background: %warning%; border-radius: %radius%px; padding: 3px 10px; }
QLabel[role~="strong"] { font-weight: 700; }
QLabel[role~="small"] { font-size: %small%px; }
QLabel[role~="large"] { font-size: %large%px; font-weight: 600; }
QLabel[role~="total"] { font-size: %total%px; font-weight: 700; }
QLineEdit, QComboBox, QSpinBox, QAbstractSpinBox, QPlainTextEdit, QTextEdit, QDateEdit {
  background: %field%; border: 2px solid %border%; border-radius: %radius%px; padding: 4px 10px;
  selection-background-color: %accent%; selection-color: %accentText%; }
QLineEdit, QComboBox, QSpinBox, QDateEdit { min-height: %entry%px; }
QLineEdit:focus, QComboBox:focus, QSpinBox:focus, QPlainTextEdit:focus, QTextEdit:focus, QDateEdit:focus {
  border-color: %accent%; }
QLineEdit:disabled, QComboBox:disabled, QSpinBox:disabled, QDateEdit:disabled, QPlainTextEdit:disabled,
  QTextEdit:disabled { background: %header%; }
QLabel:disabled, QCheckBox:disabled, QRadioButton:disabled, QMenuBar::item:disabled { color: %muted%; }
QLineEdit:read-only { background: %header%; }
QLineEdit[role~="large"] { font-size: %large%px; font-weight: 600; }
QLineEdit[role~="total"] { font-size: %total%px; font-weight: 700; }
QComboBox::drop-down { border: none; width: %keyHeight%px; }
QComboBox::down-arrow { image: url(:/ui/down.svg); width: 14px; height: 14px; }
QComboBox QAbstractItemView { color: %text%; background: %field%; border: 1px solid %shadow%; outline: none;
  selection-background-color: %selection%; selection-color: %text%; }
QComboBox QAbstractItemView::item { min-height: %row%px; padding-left: 8px; }
QAbstractItemView { color: %text%; background: %field%; alternate-background-color: %header%;
  selection-background-color: %selection%; selection-color: %text%; border: none; outline: none;
  gridline-color: %border%; }
QDialog QListView { border: 1px solid %border%; border-radius: %radius%px; }
QListView::item { min-height: %row%px; padding: 2px 12px; border-bottom: 1px solid %header%; }
QListView::item:selected { background: %selection%; color: %text%; border-left: 4px solid %accent%; }
QTableView::item, QTreeView::item { padding: 2px 8px; border-bottom: 1px solid %header%; }
QTableView::item:selected, QTreeView::item:selected { background: %selection%; color: %text%; }
QHeaderView { background: %header%; }
QHeaderView::section { color: %muted%; background: %header%; border: none; border-bottom: 1px solid %border%;
  padding: 5px 11px; font-size: %small%px; font-weight: 600; }
QTableCornerButton::section { background: %header%; border: none; }
QScrollBar:vertical { background: transparent; width: 18px; margin: 0; }
QScrollBar::handle:vertical { background: %shadow%; border-radius: 5px; min-height: 48px; margin: 3px 4px; }
QScrollBar[role~="slim"]:vertical { width: 10px; }
QScrollBar[role~="slim"]::handle:vertical { border-radius: 3px; margin: 3px 2px; }
QScrollBar:horizontal { background: transparent; height: 18px; margin: 0; }
QScrollBar::handle:horizontal { background: %shadow%; border-radius: 5px; min-width: 48px; margin: 4px 3px; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QMenu { color: %text%; background: %field%; border: 1px solid %shadow%; padding: 6px; menu-scrollable: 0; }
QMenu::item { min-height: %keyHeight%px; padding: 7px 28px 7px 16px; border-radius: 5px; }
QMenu::item:selected { color: %accentText%; background: %accent%; }
QMenu::item:disabled { color: %muted%; }
QMenu::separator { height: 1px; background: %border%; margin: 6px 10px; }
QMenuBar { color: %text%; background: %page%; }
QMenuBar::item { padding: 6px 12px; background: transparent; }
QMenuBar::item:selected { color: %accentText%; background: %accent%; }
QStatusBar { color: %text%; background: transparent; font-size: %small%px; }
QStatusBar QLabel { font-size: %small%px; }
QStatusBar::item { border: none; }
QToolTip { color: %titleText%; background: %title%; border: none; padding: 6px 8px; font-size: %small%px; }
QPushButton, QToolButton { color: %text%; background: %field%; border: 1px solid %border%;
  border-bottom: 2px solid %shadow%; border-radius: %radius%px; min-height: %entry%px; padding: 4px 16px; }
QPushButton:pressed, QToolButton:pressed { background: %selection%; }
QPushButton:focus, QToolButton:focus { border-color: %accent%; }
QPushButton:default { color: %accentText%; background: %accent%; border-color: %accent%; }
QPushButton:disabled { color: %muted%; background: %header%; }
QCheckBox, QRadioButton { color: %text%; spacing: 10px; min-height: %row%px; }
QCheckBox::indicator, QRadioButton::indicator { width: 22px; height: 22px; }
QSpinBox::up-button, QSpinBox::down-button { width: %keyHeight%px; }
QSplitter::handle { background: transparent; }
)"_s;
    const std::pair<QLatin1StringView, QColor> colours[] = {
        {"page"_L1, page},           {"panel"_L1, panel},           {"titleText"_L1, titleText},
        {"title"_L1, title},         {"field"_L1, field},           {"header"_L1, header},
        {"selection"_L1, selection}, {"accentText"_L1, accentText}, {"accent"_L1, accent},
        {"text"_L1, text},           {"muted"_L1, muted},           {"warningText"_L1, warningText},
        {"warning"_L1, warning},     {"border"_L1, border},         {"shadow"_L1, shadow}};
    for (const auto& [name, colour] : colours)
        css.replace(u'%' + name + u'%', colour.name());
    const std::pair<QLatin1StringView, int> sizes[] = {
        {"small"_L1, small},           {"normal"_L1, normal},          {"large"_L1, large},
        {"total"_L1, total},           {"radius"_L1, radius},          {"keyHeight"_L1, keyHeight * 3 / 4},
        {"row"_L1, keyHeight * 2 / 3}, {"entry"_L1, keyHeight * 2 / 3}};
    for (const auto& [name, size] : sizes)
        css.replace(u'%' + name + u'%', QString::number(size));
    return css;
}

void Theme::Apply(QSize size) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (size.isEmpty() && screen != nullptr) size = screen->size();
    // Larger screens stand no nearer: letters grow a little, the rest of the room goes to the lists.
    const double scale = std::clamp(std::min(size.width() / 1366.0, size.height() / 768.0), 1.0, 1.25);
    current() = fromSession(scale);
    const Theme& t = current();
    QApplication::setFont(t.font(Size::Normal, QFont::Normal));
    QApplication::setPalette(t.palette());
    QToolTip::setPalette(t.palette());
    qApp->setStyleSheet(t.styleSheet());
}

void SetRole(QWidget& widget, const QString& role) {
    if (widget.property("role").toString() == role) return;
    widget.setProperty("role", role);
    widget.style()->unpolish(&widget);
    widget.style()->polish(&widget);
}
