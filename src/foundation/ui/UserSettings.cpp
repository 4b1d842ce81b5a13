#include <ui/UserSettings.h>

#include <QEvent>
#include <QHeaderView>
#include <QScreen>
#include <QSettings>
#include <QSplitter>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<QSettings>& settings() {
    static std::unique_ptr<QSettings> current;
    return current;
}

/// Keeps what `save` gives as soon as the window around `widget` is hidden.
class Keeper : public QObject {
  public:
    Keeper(QWidget& widget, const QString& key, std::function<QByteArray()> save)
        : QObject(&widget)
        , m_key(key)
        , m_save(std::move(save)) {
        widget.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Hide) UserSettings().setValue(m_key, m_save());
        return QObject::eventFilter(watched, event);
    }

  private:
    QString m_key;
    std::function<QByteArray()> m_save;
};

QByteArray kept(const QString& key) { return UserSettings().value(key).toByteArray(); }

} // namespace

QSettings& UserSettings() {
    if (!settings())
        settings() = std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, u"merivane"_s,
                                                 u"fenster"_s);
    return *settings();
}

void SetUserSettingsFile(const QString& path) {
    settings() = path.isEmpty() ? nullptr : std::make_unique<QSettings>(path, QSettings::IniFormat);
}

bool RememberWindow(QWidget& window, const QString& key) {
    const bool known = window.restoreGeometry(kept(key));
    new Keeper(window, key, [&window] { return window.saveGeometry(); });
    return known;
}

void RememberSplitter(QSplitter& splitter, const QString& key) {
    splitter.restoreState(kept(key));
    new Keeper(splitter, key, [&splitter] { return splitter.saveState(); });
}

bool RememberColumns(QHeaderView& header, const QString& key) {
    const QByteArray state = kept(key);
    // The titles tell whether it is the same list still.
    QStringList titles;
    for (int i = 0; i < header.count(); ++i)
        titles << header.model()->headerData(i, header.orientation()).toString();
    const QString mark = key + u"Titel"_s;
    const bool known = UserSettings().value(mark).toStringList() == titles && header.restoreState(state);
    new Keeper(header, key, [&header, mark, titles] {
        UserSettings().setValue(mark, titles);
        return header.saveState();
    });
    return known;
}
