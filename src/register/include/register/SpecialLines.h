#pragma once

namespace till {

class Entry;
class Sale;

/// Lines that are not a plain article, and the long text of a line. Each routine is a handler of its own.
class SpecialLines {
  public:
    SpecialLines(Sale& sale, Entry& entry)
        : m_sale(sale)
        , m_entry(entry) {}

    void cmdPfand_Click(); ///< a deposit, or one that comes back
    void BookGutschrift(); ///< a credit note; needs R_Rabatt
    void EditLangText();   ///< of the selected line

  private:
    Sale& m_sale;
    Entry& m_entry;
};

} // namespace till
