#include <devices/PrintJob.h>
#include <devices/Printers.h>
#include <text/RuntimeError.h>

#include <QElapsedTimer>

#include <arpa/inet.h>
#include <atomic>
#include <cups/cups.h>
#include <gtest/gtest.h>
#include <mutex>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A print system with one queue that keeps the documents it is given.
class PrintServer {
  public:
    PrintServer() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* plain = static_cast<sockaddr*>(static_cast<void*>(&address));
        if (bind(m_socket, plain, size) != 0 || listen(m_socket, 4) != 0 ||
            getsockname(m_socket, plain, &size) != 0)
            ADD_FAILURE() << "no socket";
        m_name = "127.0.0.1:" + QByteArray::number(ntohs(address.sin_port));
        cupsSetServer(m_name.constData());
        m_thread = std::thread([this] { serve(); });
    }
    ~PrintServer() {
        m_stop = true;
        m_thread.join();
        close(m_socket);
        cupsSetServer(nullptr);
    }
    PrintServer(const PrintServer&) = delete;
    PrintServer& operator=(const PrintServer&) = delete;

    [[nodiscard]] QByteArray document() {
        const std::lock_guard lock(m_mutex);
        return m_document;
    }
    [[nodiscard]] QByteArray title() {
        const std::lock_guard lock(m_mutex);
        return m_title;
    }
    /// The attributes of the last job as "name=value", separated by blanks.
    [[nodiscard]] QByteArray options() {
        const std::lock_guard lock(m_mutex);
        return m_options;
    }
    std::atomic<bool> silent = false;  ///< takes connections and says nothing
    std::atomic<bool> refuses = false; ///< does not want the document

  private:
    void serve() {
        while (!m_stop) {
            pollfd wanted{m_socket, POLLIN, 0};
            if (poll(&wanted, 1, 20) <= 0) continue;
            http_t* http = httpAcceptConnection(m_socket, 1);
            if (!http) continue;
            httpSetTimeout(
                http, 0.1,
                [](http_t*, void* server) { return static_cast<PrintServer*>(server)->m_stop ? 0 : 1; },
                this);
            while (!m_stop && request(http)) {
            }
            httpClose(http);
        }
    }

    bool request(http_t* http) {
        char path[1024];
        http_state_t state = httpReadRequest(http, path, sizeof path);
        while (state == HTTP_STATE_WAITING && !m_stop) {
            if (httpError(http) == EPIPE) return false;
            state = httpReadRequest(http, path, sizeof path);
        }
        if (state != HTTP_STATE_POST) return false;
        while (httpUpdate(http) == HTTP_STATUS_CONTINUE) {
        }
        while (silent && !m_stop)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (httpGetExpect(http) == HTTP_STATUS_CONTINUE) httpWriteResponse(http, HTTP_STATUS_CONTINUE);
        ipp_t* asked = ippNew();
        for (ipp_state_t read = IPP_STATE_IDLE; read != IPP_STATE_DATA;) {
            read = ippRead(http, asked);
            if (read == IPP_STATE_ERROR) break;
        }
        QByteArray document;
        char buffer[4096];
        for (ssize_t count = 0; (count = httpRead2(http, buffer, sizeof buffer)) > 0;)
            document.append(buffer, count);
        ipp_t* answer = respond(asked, document);
        httpClearFields(http);
        httpSetField(http, HTTP_FIELD_CONTENT_TYPE, "application/ipp");
        httpSetLength(http, ippLength(answer));
        httpWriteResponse(http, HTTP_STATUS_OK);
        while (ippWrite(http, answer) != IPP_STATE_DATA && !httpError(http)) {
        }
        httpFlushWrite(http);
        ippDelete(asked);
        ippDelete(answer);
        return true;
    }

    ipp_t* respond(ipp_t* asked, const QByteArray& document) {
        ipp_t* answer = ippNewResponse(asked);
        switch (ippGetOperation(asked)) {
        case IPP_OP_PRINT_JOB: {
            const std::lock_guard lock(m_mutex);
            m_title = ippGetString(ippFindAttribute(asked, "job-name", IPP_TAG_NAME), 0, nullptr);
            m_options.clear();
            for (auto* a = ippFirstAttribute(asked); a; a = ippNextAttribute(asked)) {
                if (ippGetGroupTag(a) != IPP_TAG_JOB) continue;
                char value[100];
                ippAttributeString(a, value, sizeof value);
                m_options += QByteArray(ippGetName(a)) + "=" + value + " ";
            }
            ippAddInteger(answer, IPP_TAG_JOB, IPP_TAG_INTEGER, "job-id", 7);
            if (refuses)
                ippSetStatusCode(answer, IPP_STATUS_ERROR_DOCUMENT_FORMAT_NOT_SUPPORTED);
            else
                m_document = document;
            break;
        }
        case IPP_OP_GET_PRINTER_ATTRIBUTES:
            ippAddString(answer, IPP_TAG_PRINTER, IPP_TAG_KEYWORD, "media-default", nullptr,
                         "na_letter_8.5x11in");
            break;
        default:
            ippAddString(answer, IPP_TAG_PRINTER, IPP_TAG_NAME, "printer-name", nullptr, "Bondrucker");
            ippAddString(answer, IPP_TAG_PRINTER, IPP_TAG_URI, "printer-uri-supported", nullptr,
                         ("ipp://" + m_name + "/printers/Bondrucker").constData());
            ippAddInteger(answer, IPP_TAG_PRINTER, IPP_TAG_ENUM, "printer-type", 0);
        }
        return answer;
    }

    int m_socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QByteArray m_name, m_document, m_title, m_options;
    std::atomic<bool> m_stop = false;
    std::mutex m_mutex;
    std::thread m_thread;
};

int raised(qint64 within) {
    QElapsedTimer timer;
    timer.start();
    int number = 0;
    try {
        PrintLine(u"Bondrucker"_s, u"Kassenlade"_s, u"DejaVu Sans"_s, 9.5, u"p"_s);
    } catch (const RuntimeError& error) {
        number = error.Number;
    }
    EXPECT_LT(timer.elapsed(), within);
    return number;
}

} // namespace

TEST(PrintSystem, TakesTheJobOrSaysWhyNot) {
    {
        PrintServer server;
        EXPECT_TRUE(SystemPrinters().names().contains(u"Bondrucker"_s));
        EXPECT_EQ(raised(3000), 0);
        EXPECT_EQ(server.title(), "Kassenlade");
        EXPECT_TRUE(server.document().startsWith("%PDF-") && server.document().trimmed().endsWith("%%EOF"));
        server.refuses = true;
        EXPECT_EQ(raised(3000), 482);
        server.silent = true;
        EXPECT_EQ(raised(5000), 482);
        QElapsedTimer timer;
        timer.start();
        EXPECT_FALSE(SystemPrinters().names().contains(u"Bondrucker"_s));
        EXPECT_LT(timer.elapsed(), 15000);
    }
    cupsSetServer("127.0.0.1:1"); // nobody there
    EXPECT_EQ(raised(3000), 482);
    EXPECT_FALSE(SystemPrinters().names().contains(u"Bondrucker"_s));
    cupsSetServer(nullptr);
}

TEST(PrintSystem, PaperOfQueueAndJob) {
    {
        PrintServer server;
        const QString queue = u"Bondrucker"_s;
        EXPECT_EQ(PrinterPaper(queue), QSizeF(215.9, 279.4));
        const auto options = [&](QSizeF paper) {
            PrintPdf(queue, u"Kassenbon"_s, "%PDF-1.4", paper);
            return server.options();
        };
        EXPECT_EQ(options({}), "");
        EXPECT_EQ(options({79.96, 250}),
                  "media=Custom.80x250mm print-scaling=none orientation-requested=portrait ");
        EXPECT_TRUE(options({57.5, 250.25}).startsWith("media=Custom.57.5x250.3mm "));
        EXPECT_TRUE(options({210, 297}).startsWith("media=iso_a4_210x297mm "));
        EXPECT_TRUE(options({148.1, 210}).startsWith("media=iso_a5_148x210mm "));
        EXPECT_TRUE(options({210, 148}).startsWith("media=Custom.210x148mm "));
    }
    EXPECT_EQ(PrinterPaper(u"PDF-Drucker"_s), QSizeF(210, 297));
    cupsSetServer("127.0.0.1:1"); // nobody there
    EXPECT_EQ(PrinterPaper(u"Bondrucker"_s), QSizeF(210, 297));
    cupsSetServer(nullptr);
}
