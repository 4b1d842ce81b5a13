#include "../PrintQueues.h"

#include <array>
#include <cmath>
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
constexpr double hundredths = 100; // of a millimetre, in which the print system measures paper

/// `patience` is for each answer: the till does not wait for a print system that stands still.
Connection connectToServer(double patience) {
    Connection http(
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, connectMs, nullptr),
        &httpClose);
    if (http) httpSetTimeout(http.get(), patience, nullptr, nullptr);
    return http;
}

QByteArray pathOf(const QString& queue) { return "/printers/" + queue.toUtf8(); }

/// The caller owns it.
ipp_t* requestTo(const QByteArray& path, ipp_op_t operation) {
    std::array<char, HTTP_MAX_URI> uri{};
    httpAssembleURI(HTTP_URI_CODING_ALL, uri.data(), HTTP_MAX_URI, "ipp", nullptr, "localhost", ippPort(),
                    path.constData());
    ipp_t* request = ippNewRequest(operation);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.data());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    return request;
}

QByteArray mediaName(QSizeF paper) {
    const auto is = [&](double width, double height) {
        return std::abs(paper.width() - width) < 1 && std::abs(paper.height() - height) < 1;
    };
    if (is(210, 297)) return "iso_a4_210x297mm";
    if (is(148, 210)) return "iso_a5_148x210mm";
    const auto mm = [](double length) { return QByteArray::number(std::round(length * 10) / 10); };
    return "Custom." + mm(paper.width()) + "x" + mm(paper.height()) + "mm";
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

QSizeF queuePaper(const QString& queue) {
    const Connection http = connectToServer(jobSeconds);
    if (!http) return {};
    const QByteArray path = pathOf(queue);
    ipp_t* request = requestTo(path, IPP_OP_GET_PRINTER_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr,
                 "media-default");
    const Message answer(cupsDoRequest(http.get(), request, path.constData()),
                         &ippDelete); // takes the request
    ipp_attribute_t* attribute =
        answer ? ippFindAttribute(answer.get(), "media-default", IPP_TAG_ZERO) : nullptr;
    const char* name = attribute ? ippGetString(attribute, 0, nullptr) : nullptr;
    if (!name) return {};
    const pwg_media_t* media = pwgMediaForPWG(name);
    if (!media) media = pwgMediaForLegacy(name);
    if (!media) return {};
    return QSizeF(media->width, media->length) / hundredths;
}

QString submitDocument(const QString& queue, const QString& title, const QByteArray& pdf, QSizeF paper) {
    const Connection http = connectToServer(jobSeconds);
    if (!http) return u"Das Drucksystem antwortet nicht"_s;
    const QByteArray path = pathOf(queue);
    // One request with everything in it: no half job can stay in the queue, and nothing but this connection,
    // whose patience is known, is used.
    const Message request(requestTo(path, IPP_OP_PRINT_JOB), &ippDelete);
    const auto add = [&](ipp_tag_t kind, const char* attribute, const char* value) {
        ippAddString(request.get(), IPP_TAG_OPERATION, kind, attribute, nullptr, value);
    };
    add(IPP_TAG_NAME, "job-name", title.toUtf8().constData());
    add(IPP_TAG_MIMETYPE, "document-format", CUPS_FORMAT_PDF);
    if (!paper.isEmpty()) {
        // The pages are made for this paper: upright and in their own size, whatever the queue would prefer.
        const auto job = [&](const char* attribute, const char* value) {
            ippAddString(request.get(), IPP_TAG_JOB, IPP_TAG_KEYWORD, attribute, nullptr, value);
        };
        job("media", mediaName(paper).constData());
        job("print-scaling", "none");
        ippAddInteger(request.get(), IPP_TAG_JOB, IPP_TAG_ENUM, "orientation-requested", IPP_ORIENT_PORTRAIT);
    }
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
