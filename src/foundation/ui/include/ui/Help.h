#pragma once

#include <QDialog>

class QUrl;
class QWidget;

/// Hands a web page or an address of an e-mail to the program that the system has for it. Tells and gives
/// False when it has none.
bool OpenWithSystem(const QUrl& url);

/// Who made the program, which version it is, and on which store it works.
class frmAbout : public QDialog {
    Q_OBJECT

  public:
    explicit frmAbout(QWidget* parent = nullptr);
};

/// Opens the user guide in a window of its own, or brings the open one to the front.
void ShowHelp();
