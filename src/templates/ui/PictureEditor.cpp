#include "PictureEditor.h"

#include <session/Handle.h>
#include <session/MsgBox.h>
#include <templates/ValueText.h>
#include <text/DetailedError.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QSaveFile>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestRead = 64 * 1024 * 1024;

/// What a saved copy is called by default.
QString fileNameFor(const QByteArray& picture) {
    if (picture.startsWith("\xFF\xD8")) return u"Logo.jpg"_s;
    if (picture.startsWith("BM")) return u"Logo.bmp"_s;
    if (picture.startsWith("GIF8")) return u"Logo.gif"_s;
    if (picture.startsWith("RIFF")) return u"Logo.webp"_s;
    return u"Logo.png"_s;
}

} // namespace

PictureEditor::PictureEditor(QWidget* parent)
    : PropertyEditor(parent)
    , m_preview(new QLabel(this))
    , m_remark(new QLabel(this))
    , m_choose(new TouchKey(u"Wählen"_s, this))
    , m_export(new TouchKey(u"Sichern"_s, this))
    , m_remove(new TouchKey(u"Entfernen"_s, this)) {
    const Theme& t = Theme::Current();
    m_preview->setObjectName(u"imgPreview"_s);
    m_preview->setFixedSize(t.keyHeight * 2, t.keyHeight * 2);
    m_preview->setAlignment(Qt::AlignCenter);
    // Pictures are judged on paper, whatever the colours of the screen are.
    m_preview->setStyleSheet(u"background: white; border: 1px solid %1;"_s.arg(t.border.name()));
    m_remark->setObjectName(u"lblRemark"_s);
    m_remark->setWordWrap(true);
    m_remark->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_choose->setObjectName(u"cmdChoose"_s);
    m_export->setObjectName(u"cmdExport"_s);
    m_remove->setObjectName(u"cmdRemove"_s);

    auto* keys = new QHBoxLayout;
    keys->setSpacing(t.gap);
    for (TouchKey* key : {m_choose, m_export, m_remove}) {
        key->setCompact(true);
        keys->addWidget(key);
    }
    auto* right = new QVBoxLayout;
    right->setSpacing(t.gap);
    right->addWidget(m_remark, 1);
    right->addLayout(keys);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(t.gap * 2);
    row->addWidget(m_preview, 0, Qt::AlignTop);
    row->addLayout(right, 1);

    connect(m_choose, &TouchKey::clicked, this, [this] { Handle("PictureEditor", [this] { choose(); }); });
    connect(m_export, &TouchKey::clicked, this,
            [this] { Handle("PictureEditor", [this] { exportPicture(); }); });
    connect(m_remove, &TouchKey::clicked, this, [this] { emit edited(QByteArray()); });
}

void PictureEditor::display(const PropertiesList& list, const Property& property) {
    m_picture = std::get<QByteArray>(property.value);
    const QImage picture = list.Picture(property.key);
    QPixmap shown;
    if (!picture.isNull()) {
        const QSize room = (m_preview->size() - QSize(8, 8)) * devicePixelRatioF();
        shown = QPixmap::fromImage(picture.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        shown.setDevicePixelRatio(devicePixelRatioF());
    }
    m_preview->setPixmap(shown);
    m_remark->setText(pictureRemark(list, property));
    m_export->setEnabled(!m_picture.isEmpty());
    m_remove->setEnabled(!m_picture.isEmpty());
}

QWidget& PictureEditor::entry() { return *m_choose; }

void PictureEditor::choose() {
    const auto path =
        ChooseFile({u"Bild wählen..."_s, u"Bilder|*.png;*.jpg;*.jpeg;*.bmp;*.gif;*.webp"_s, {}, false});
    if (!path) return;
    QFile file(*path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw DetailedError(70, u"\"%1\" kann nicht gelesen werden."_s.arg(*path), file.errorString());
    }
    const QByteArray picture = file.read(largestRead);
    if (const QString fault = pictureFault(picture); !fault.isEmpty()) {
        MsgBox(fault, MsgIcon::Exclamation);
        return;
    }
    emit edited(picture);
}

void PictureEditor::exportPicture() {
    const auto path = ChooseFile({u"Bild speichern..."_s, u"Alle Dateien|*"_s, fileNameFor(m_picture), true});
    if (!path) return;
    QSaveFile file(*path);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_picture) != m_picture.size() || !file.commit()) {
        throw DetailedError(70, u"\"%1\" kann nicht geschrieben werden."_s.arg(*path), file.errorString());
    }
}
