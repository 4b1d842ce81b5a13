#pragma once

#include <QString>

/// The program's own log: one text file of at most a megabyte, with two older ones beside it. It holds what
/// support wants to know after the fact: warnings of the libraries and every unexpected error that was shown.

/// Where the program keeps what is its own on this machine, the log among it: MERIVANE_STATE, else the user's
/// state folder. It need not exist.
[[nodiscard]] QString StateFolder();
/// Starts to log into `folder` (made when missing) and takes over the messages of Qt. An empty folder means
/// StateFolder(). Never raises: a log that cannot be written is left out.
void OpenLog(const QString& folder = {});
/// Ends it and gives the messages of Qt back.
void CloseLog();
/// Writes a line with time stamp; line breaks in `text` become " | ". Nothing without OpenLog. Never raises.
void WriteLog(const QString& text);
/// Path of the log file in use, "" when there is none.
[[nodiscard]] QString LogFile();
