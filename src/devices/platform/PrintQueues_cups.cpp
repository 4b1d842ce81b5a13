#include "../PrintQueues.h"

#include <array>
#include <cups/cups.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace devices {
namespace {

using Connection = std::unique_ptr<http_t, decltype(&httpClose)>;
using Message = std::unique_ptr<ipp_t, decltype(&ippDelete)>;
constexpr int connectMs = 1000;
// A busy server may take its time to list its queues; without them the till would not start.
constexpr double listSeconds = 2, jobSeconds = 1;

/// `patience` is for each answer: the till does not wait for a print system that stands still.
Connection connectToServer(double patience) {
    Connection http(
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, connectMs, nullptr),
        &httpClose);
    if (http) httpSetTimeout(http.get(), patience, nullptr, nullptr);
    return http;
}

} // namespace

PrintQueues printQueues() {
    PrintQueues queues;
    const Connection http = connectToServer(listSeconds);
    if (!http) return queues;
    cups_dest_t* destinations = nullptr;
    const int count = cupsGetDests2(http.get(), &destinations);
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
    const Connection http = connectToServer(jobSeconds);
    if (!http) return u"Das Drucksystem antwortet nicht"_s;
    const QByteArray name = queue.toUtf8(), path = "/printers/" + name;
    std::array<char, HTTP_MAX_URI> uri{};
    httpAssembleURI(HTTP_URI_CODING_ALL, uri.data(), HTTP_MAX_URI, "ipp", nullptr, "localhost", ippPort(),
                    path.constData());
    // One request with everything in it: no half job can stay in the queue, and nothing but this connection,
    // whose patience is known, is used.
    const Message request(ippNewRequest(IPP_OP_PRINT_JOB), &ippDelete);
    const auto add = [&](ipp_tag_t kind, const char* attribute, const char* value) {
        ippAddString(request.get(), IPP_TAG_OPERATION, kind, attribute, nullptr, value);
    };
    add(IPP_TAG_URI, "printer-uri", uri.data());
    add(IPP_TAG_NAME, "requesting-user-name", cupsUser());
    add(IPP_TAG_NAME, "job-name", title.toUtf8().constData());
    add(IPP_TAG_MIMETYPE, "document-format", CUPS_FORMAT_PDF);
    const auto size = static_cast<size_t>(pdf.size());
    const bool sent = cupsSendRequest(http.get(), request.get(), path.constData(),
                                      ippLength(request.get()) + size) == HTTP_STATUS_CONTINUE &&
                      cupsWriteRequestData(http.get(), pdf.constData(), size) == HTTP_STATUS_CONTINUE;
    const Message answer(sent ? cupsGetResponse(http.get(), path.constData()) : nullptr, &ippDelete);
    if (answer && ippGetStatusCode(answer.get()) < IPP_STATUS_REDIRECTION_OTHER_SITE) return {};
    const QString reason = QString::fromUtf8(cupsLastErrorString());
    return reason.isEmpty() ? queue : reason;
}

} // namespace devices
