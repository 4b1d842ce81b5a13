#include "../PrintQueues.h"

#include <cups/cups.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace devices {
namespace {

using Connection = std::unique_ptr<http_t, decltype(&httpClose)>;
constexpr int connectMs = 1000;
constexpr double stallSeconds =
    1; // for each answer; the till does not wait for a print system that stands still

} // namespace

PrintQueues printQueues() {
    PrintQueues queues;
    cups_dest_t* destinations = nullptr;
    const int count = cupsGetDests(&destinations);
    for (int i = 0; i < count; ++i) {
        if (destinations[i].instance) continue; // a set of options over a queue, not a printer of its own
        const QString name = QString::fromUtf8(destinations[i].name);
        queues.names << name;
        if (destinations[i].is_default) queues.defaultName = name;
    }
    cupsFreeDests(count, destinations);
    return queues;
}

QString submitDocument(const QString& queue, const QString& title, const QByteArray& pdf) {
    const auto reason = [] { return QString::fromUtf8(cupsLastErrorString()); };
    const Connection http(
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, connectMs, nullptr),
        &httpClose);
    if (!http) return u"Das Drucksystem antwortet nicht"_s;
    httpSetTimeout(http.get(), stallSeconds, nullptr, nullptr);
    const QByteArray name = queue.toUtf8(), document = title.toUtf8();
    const int job = cupsCreateJob(http.get(), name.constData(), document.constData(), 0, nullptr);
    if (job == 0) return reason();
    const bool taken = cupsStartDocument(http.get(), name.constData(), job, document.constData(),
                                         CUPS_FORMAT_PDF, 1) == HTTP_STATUS_CONTINUE &&
                       cupsWriteRequestData(http.get(), pdf.constData(), static_cast<size_t>(pdf.size())) ==
                           HTTP_STATUS_CONTINUE &&
                       cupsFinishDocument(http.get(), name.constData()) == IPP_STATUS_OK;
    if (taken) return {};
    const QString why = reason();
    cupsCancelJob2(http.get(), name.constData(), job, 0); // no half job may wait in the queue
    return why.isEmpty() ? queue : why;
}

} // namespace devices
