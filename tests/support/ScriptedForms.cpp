#include <support/ScriptedForms.h>

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>
#include <stdexcept>

using namespace Qt::StringLiterals;

ScriptedForms::ScriptedForms()
    : m_before(SetModalHook([this](QDialog& dialog) { return run(dialog); })) {}

ScriptedForms::~ScriptedForms() { SetModalHook(m_before); }

ScriptedForms& ScriptedForms::expectModal(const QString& name, std::function<void(QDialog&)> drive) {
    Step& step = expect(Kind::Modal);
    step.text = name;
    step.drive = [drive = std::move(drive)](void* dialog) { drive(*static_cast<QDialog*>(dialog)); };
    return *this;
}

int ScriptedForms::run(QDialog& dialog) {
    const QString name = QString::fromLatin1(dialog.metaObject()->className());
    const std::optional<Step> step = take(Kind::Modal, u"form "_s + name);
    if (step) {
        EXPECT_TRUE(step->text == name || step->text == dialog.objectName())
            << "came:     " << name.toStdString() << "\nexpected: " << step->text.toStdString();
        showForm(dialog);
        step->drive(&dialog);
        QApplication::processEvents();
        if (dialog.isVisible()) ADD_FAILURE() << name.toStdString() << " is still open after its script";
    }
    if (dialog.isVisible() || !step) dialog.reject();
    return dialog.result();
}

void failMissing(const QWidget& form, const QString& name) {
    ADD_FAILURE() << form.metaObject()->className() << " has no control " << name.toStdString();
    throw std::runtime_error("no control " + name.toStdString());
}

void pressKey(QWidget& form, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QWidget* target = form.focusWidget() != nullptr ? form.focusWidget() : &form;
    QTest::keyClick(target, key, modifiers);
}

void typeText(QWidget& form, const QString& text) {
    for (const QChar c : text) {
        QWidget* target = form.focusWidget() != nullptr ? form.focusWidget() : &form;
        QTest::sendKeyEvent(QTest::Click, target, static_cast<Qt::Key>(c.toUpper().unicode()), QString(c),
                            c.isUpper() ? Qt::ShiftModifier : Qt::NoModifier);
    }
}

void clickOn(QWidget& form, const QString& name) {
    auto& target = control<QWidget>(form, name);
    if (!target.isVisible() || !target.isEnabled()) {
        ADD_FAILURE() << name.toStdString() << " cannot be clicked: it is "
                      << (target.isVisible() ? "disabled" : "hidden");
        return;
    }
    QTest::mouseClick(&target, Qt::LeftButton);
}

void showForm(QWidget& form) {
    form.show();
    QApplication::setActiveWindow(&form);
    QApplication::processEvents();
}

bool waitFor(const std::function<bool()>& condition, int milliseconds) {
    return QTest::qWaitFor(condition, milliseconds);
}
