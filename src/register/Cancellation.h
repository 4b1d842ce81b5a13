#pragma once

class QString;
class Recordset;

namespace till {

class Sale;
class Undo;
enum class Unload;

/// Removal of lines from the open sale. Each removed line leaves a row in Stornos.
class Cancellation {
  public:
    Cancellation(Sale& sale, Undo& undo)
        : m_sale(sale)
        , m_undo(undo) {}

    void Storno(); ///< cmdStorno: the selected line
    /// The questions at closing. Each step goes its way whatever became of the one before.
    [[nodiscard]] Unload QueryUnload();

  private:
    /// Writes the Stornos row of the line at which `line` stands.
    static void record(Recordset& stornos, const Recordset& line);
    /// Deletes the vouchers that the lines of this till in `table` created.
    static void deleteVouchers(const QString& table);
    static void deleteVoucher(const QString& number);
    static void recordAll();

    Sale& m_sale;
    Undo& m_undo;
};

} // namespace till
