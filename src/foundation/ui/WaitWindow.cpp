#include "WaitDialog.h"

#include <ui/WaitWindow.h>

#include <QApplication>

WaitWindow::WaitWindow() = default;
WaitWindow::~WaitWindow() = default;

void WaitWindow::Begin(const QString& title, const QString& text) {
    m_form = std::make_unique<WaitDialog>(title, QApplication::activeWindow());
    m_form->setText(text);
    m_form->show();
    m_form->raise();
    m_form->activateWindow();
}

void WaitWindow::Show(const QString& text) {
    if (m_form) m_form->setText(text);
}

bool WaitWindow::TakeCancel() { return m_form && m_form->takeCancel(); }

void WaitWindow::End() { m_form.reset(); }
