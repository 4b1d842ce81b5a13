#pragma once

#include <register/Register.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Schema.h>

#include <QFile>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <harness/NoScreen.h>
#include <harness/Session.h>
#include <memory>
#include <optional>
#include <vector>

// What the benches of the till share: shops of many articles, and figures.

using namespace Qt::StringLiterals;

/// Article numbers; steps of a large prime go all over the index.
inline QString number(int i, int articles = 100'000) { return QString::number(2'000'000 + i % articles); }

/// Makes a shop of 10 to the power of `digits` articles in an empty `store` and opens it as gDB; `folder`
/// ends in a separator.
inline void openShop(const QString& folder, const QString& store, int digits = 5) {
    startSession(folder);
    QFile(folder + u"karten.txt"_s).open(QIODevice::WriteOnly);
    Database::CreateDatabase(store, {}, {}, schema::createTables)->Close();
    gDB = Database::OpenDatabase(store);
    gDB->Execute(u"CREATE TABLE Ziffern (N LONG)"_s);
    for (int n = 0; n < 10; ++n)
        gDB->Execute(u"INSERT INTO Ziffern (N) VALUES (%1)"_s.arg(n));
    QStringList from, number;
    for (int i = 0; i < digits; ++i) {
        from << u"Ziffern AS z%1"_s.arg(i);
        number << u"z%1.N * %2"_s.arg(i).arg(qint64(std::pow(10, i)));
    }
    gDB->Execute(
        u"INSERT INTO Artikel (Nummer, Name, WarenGruppe, Menge, Einheit, SteuerSatz, EKPreis, VKPreis, "
        u"SollBestand, IstBestand, Aktiv, LagerAktiv, Rabatt) SELECT CStr(2000000 + "_s +
        number.join(u" + "_s) +
        u"), 'Artikel', 'Gruppe', 1, 'Stück', 7, 1, 1.99, 2, 100, -1, -1, -1 FROM "_s + from.join(u", "_s));
}

inline double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// What is thrown here nobody in the till catches: for the store it is a kill.
struct Killed {};

/// A cashier whose till is killed while it asks how to print, and who then says when a question came.
class KilledAtThePrintChoice : public NoScreen {
  public:
    void Show(till::Dialog which) override {
        if (which == till::Dialog::PrintDlg) throw Killed();
    }
};

/// Reads messages, noting when, and says No to questions.
class Reader : public DialogHost {
  public:
    Reader()
        : m_before(SetDialogHost(this)) {}
    ~Reader() override { SetDialogHost(m_before); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    MsgAnswer msgBox(const QString&, MsgButtons buttons, MsgIcon, const QString&, MsgAnswer) override {
        if (!asked) asked = std::chrono::steady_clock::now();
        return buttons == MsgButtons::YesNo ? MsgAnswer::No : MsgAnswer::OK;
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return {}; }
    std::optional<QString> chooseFile(const FileRequest&) override { return {}; }

    std::optional<std::chrono::steady_clock::time_point> asked;

  private:
    DialogHost* m_before;
};

/// Kills a till at the print choice of a sale of 200 lines and starts it again on gDB: the milliseconds until
/// it asks what is to become of it; nullopt when it does not ask.
inline std::optional<double> restartToQuestion() {
    constexpr int lines = 200;
    KilledAtThePrintChoice cashier;
    auto till = std::make_unique<till::Register>(cashier);
    till->Load();
    gPrintMode = 3;
    for (int line = 0; line < lines; ++line) {
        till->SetInput(number(line));
        till->cmdEnter_Click();
    }
    try {
        till->cmdTotal_Click();
    } catch (const Killed&) {
    }
    till = std::make_unique<till::Register>(cashier);
    Reader reader;
    const auto start = std::chrono::steady_clock::now();
    till->Load();
    till->ResumeBooking();
    if (!reader.asked || !till->basket().isEmpty()) return std::nullopt;
    return std::chrono::duration<double, std::milli>(*reader.asked - start).count();
}

/// Tells a figure and whether it keeps its bound.
inline bool figure(const char* name, double measured, double bound) {
    std::printf("%s %.2f %.2f %s\n", name, measured, bound, measured <= bound ? "ok" : "MISSED");
    return measured <= bound;
}

/// The same for what we need with something against what we need without it, in milliseconds. They are
/// compared round by round: what one asks of a disk varies more from minute to minute than what is measured.
inline bool share(const char* name, const std::vector<double>& with, const std::vector<double>& without,
                  double bound) {
    std::vector<double> ratios;
    for (std::size_t round = 0; round < with.size(); ++round)
        ratios.push_back(with[round] / without[round]);
    std::fprintf(stderr, "# %s: %.3f ms to %.3f ms\n", name, median(with), median(without));
    return figure(name, median(ratios), bound);
}

/// The same for what we need against what the bare engine needs, in milliseconds.
inline bool ratio(const char* name, const std::vector<double>& ours, const std::vector<double>& raw,
                  double bound) {
    std::fprintf(stderr, "# %s: %.3f ms to %.3f ms\n", name, median(ours), median(raw));
    return figure(name, median(ours) / median(raw), bound);
}
