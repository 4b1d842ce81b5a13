#include "HiddenProgram.h"

#include <QProcess>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace devices {

bool startHidden(const QString& path) {
    QProcess program;
    program.setProgram(path);
    program.setStandardInputFile(QProcess::nullDevice());
    program.setStandardOutputFile(QProcess::nullDevice());
    program.setStandardErrorFile(QProcess::nullDevice());
#ifdef Q_OS_WIN
    program.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments* arguments) {
        arguments->startupInfo->dwFlags |= STARTF_USESHOWWINDOW;
        arguments->startupInfo->wShowWindow = SW_HIDE;
    });
#endif
    return program.startDetached();
}

} // namespace devices
