#pragma once

#include <devices/PrintJob.h>
#include <devices/Printers.h>

#include <utility>
#include <vector>

/// Stands for the printers of the system for its life: `present` are plugged in, and what they are given is
/// kept instead of printed. Its users link the room devices.
class TestPrinters : private PrinterList {
  public:
    explicit TestPrinters(QStringList names = {})
        : present(std::move(names))
        , m_listBefore(SetPrinterList(this))
        , m_spoolerBefore(SetPrintSpooler(
              [this](const QString& printer, const QString& title, const QByteArray& pdf, QSizeF) {
                  jobs.push_back({printer, title, pdf});
              })) {}
    ~TestPrinters() override {
        SetPrintSpooler(m_spoolerBefore);
        SetPrinterList(m_listBefore);
    }
    TestPrinters(const TestPrinters&) = delete;
    TestPrinters& operator=(const TestPrinters&) = delete;

    struct Job {
        QString printer, title;
        QByteArray pdf;
    };
    std::vector<Job> jobs;
    QStringList present;

  private:
    [[nodiscard]] QStringList names() const override { return present; }
    [[nodiscard]] QString defaultName() const override { return present.value(0); }
    const PrinterList* m_listBefore;
    PrintSpooler m_spoolerBefore;
};
