#include <session/Log.h>
#include <session/MessageDetails.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
QString pending;
} // namespace

MessageDetails::MessageDetails(const QString& text)
    : m_before(std::exchange(pending, text)) {
    if (!text.isEmpty()) WriteLog(u"details: "_s + text);
}

MessageDetails::~MessageDetails() { pending = m_before; }

QString MessageDetails::Take() { return std::exchange(pending, {}); }
