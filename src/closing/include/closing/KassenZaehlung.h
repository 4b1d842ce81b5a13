#pragma once

#include <text/Currency.h>

#include <QString>

#include <array>

/// Counts the money in the till: how many of each coin and note, and what that makes. The rules of
/// frmKasseBestand over gKasseBestandErgebnis.
class KassenZaehlung {
  public:
    struct Sorte {
        const char16_t* box;  ///< name of its box in the form
        const char16_t* name; ///< "2 Euro"
        double value;
        bool note;
    };
    static constexpr int Sorten = 15, mostPieces = 99'999;
    /// From the smallest to the largest.
    [[nodiscard]] static const std::array<Sorte, Sorten>& Alle();

    /// `pieces` as typed: empty is none. Raises 13 for what is no whole number from 0 to mostPieces; the
    /// count stays.
    void Set(int sorte, const QString& pieces);
    [[nodiscard]] Currency Betrag(int sorte) const; ///< of one kind
    /// All of it, summed up from the smallest kind to the largest, each step in money.
    [[nodiscard]] Currency Summe() const;
    [[nodiscard]] Currency Muenzen() const;
    [[nodiscard]] Currency Scheine() const;

    void Confirm() const; ///< cmdOK
    static void Cancel();

  private:
    template <typename Wanted>
    [[nodiscard]] Currency sum(const Wanted& wanted) const;

    std::array<int, Sorten> m_pieces{};
};
