#pragma once

#include <session/Error.h>

#include <exception>
#include <utility>

/// The guard of every event handler: runs `body`; an error first runs `cleanup` (cancel pending edits,
/// refresh the screen), then goes to ShowProgrammFehler under `source`. True when the body went through.
///
///     void frmKasse::on_cmdStorno_clicked() {
///         Handle("frmKasse", [&] { m_register.Storno(); }, [&] { m_register.CancelEdits(); });
///     }
template <typename Body, typename Cleanup>
bool Handle(const char* source, Body&& body, Cleanup&& cleanup) {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (const RuntimeError& error) {
        cleanup();
        ShowProgrammFehler(error, QString::fromLatin1(source));
    } catch (const std::exception& error) {
        cleanup();
        ShowProgrammFehler(51, QString::fromLatin1(source), QString::fromUtf8(error.what()));
    }
    return false;
}

template <typename Body>
bool Handle(const char* source, Body&& body) {
    return Handle(source, std::forward<Body>(body), [] {});
}
