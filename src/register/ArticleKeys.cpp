#include <register/ArticleKeys.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

std::size_t keyIndex(int number, int count, const QString& control) {
    if (number < 0 || number >= count)
        throw RuntimeError(340, u"Das Steuerelementfeld '%1' hat kein Element %2"_s.arg(control).arg(number),
                           u"frmKasse"_s);
    return static_cast<std::size_t>(number);
}

} // namespace

void ArticleKeys::LoadGroups() {
    for (const auto rs = gDB->OpenRecordset(u"ShortCutGroup"_s); !rs->Eof(); rs->MoveNext())
        m_groups[keyIndex(rs->Long(u"GroupNumber"), Groups, u"cmdGruppe"_s)] = rs->Text(u"GroupName");
}

void ArticleKeys::PressGroup(int index) {
    const QString& caption = m_groups[keyIndex(index, Groups, u"cmdGruppe"_s)];
    m_pressed = index;
    m_title = u"Schnellwahltasten - "_s + caption + u"..."_s;
    const auto rs =
        gDB->OpenRecordset(u"SELECT * FROM ShortCut WHERE GroupNumber="_s + QString::number(index) + u";"_s);
    for (; !rs->Eof(); rs->MoveNext()) {
        Key& key = m_keys[keyIndex(rs->Long(u"Number"), Keys, u"cmdArtikel"_s)];
        key.caption = rs->Text(u"Name");
        key.artikelNummer = rs->Text(u"ArtikelNummer");
    }
}

} // namespace till
