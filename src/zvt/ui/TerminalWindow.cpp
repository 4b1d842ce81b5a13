#include "frmKasseTerminal.h"

#include <QApplication>

#include <zvt/ui/TerminalWindow.h>

TerminalWindow::TerminalWindow() = default;
TerminalWindow::~TerminalWindow() = default;

void TerminalWindow::Begin(const QString& title, const QString& text) {
    m_form = std::make_unique<frmKasseTerminal>(title, QApplication::activeWindow());
    m_form->setText(text);
    m_form->show();
    m_form->raise();
    m_form->activateWindow();
}

void TerminalWindow::Show(const QString& text) {
    if (m_form) m_form->setText(text);
}

bool TerminalWindow::TakeCancel() { return m_form && m_form->takeCancel(); }

void TerminalWindow::End() { m_form.reset(); }
