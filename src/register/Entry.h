#pragma once

#include <register/Register.h>
#include <session/gArtikel.h>

#include <optional>

namespace till {

/// What the cashier types and what becomes of it: the rules of the entry text and the one decision routine.
class Register::Entry {
  public:
    explicit Entry(Register& owner)
        : m_owner(owner) {}

    [[nodiscard]] const QString& input() const { return m_input; }
    [[nodiscard]] const QString& mal() const { return m_mal; }
    /// Stores the text and examines it for "*", "+" and a trailing "-".
    void SetInput(const QString& text);
    void SetMal(const QString& text);
    void Clear();
    /// cmdPlus and "+".
    void AddQuantity(int amount);
    /// cmdEnter.
    void Decide();
    void ExpandLinks(const QString& ArtikelNummer, double Menge);

  private:
    enum class Next { Add, Again, End };

    void examine();
    void plus();
    void minus();
    [[nodiscard]] bool voucherSelected();
    [[nodiscard]] int multiplier() const;

    [[nodiscard]] Next freeAmount(const QString& trimmed);
    [[nodiscard]] Next lookup(const QString& text, bool& orderSearchDone);
    [[nodiscard]] Next found(const QString& trimmed);
    [[nodiscard]] Next notFound(const QString& text, bool& orderSearchDone);
    [[nodiscard]] bool priceTemplate(const QString& text, const QString& trimmed);
    void pressCode(const QString& trimmed, double steuerSatz);
    /// nullopt when no supplier knows the number; an empty text when the choice was cancelled.
    [[nodiscard]] static std::optional<QString> orderNumber(const QString& text, RegisterScreen& screen);

    Register& m_owner;
    QString m_input, m_mal;
    bool m_mayHaveLinks = true; ///< false for an article that is known to have none
};

} // namespace till
