#pragma once

#include <session/Clock.h>
#include <ui/TouchKey.h>

#include <QDateEdit>
#include <QShortcut>
#include <QSignalBlocker>

#include <functional>
#include <optional>
#include <utility>

/// The row that chooses the day of a history: the day itself, the one before and the one behind (F7, F8), and
/// all days.
class DayRow {
  public:
    /// `show` is called whenever another day, or all of them, shall be shown. It begins with today.
    DayRow(QDateEdit& day, TouchKey& previous, TouchKey& next, TouchKey& all,
           const std::function<void()>& show)
        : m_day(day)
        , m_all(all) {
        day.setDate(Today());
        previous.setHint(QStringLiteral("F7"));
        next.setHint(QStringLiteral("F8"));
        for (const auto& [key, button] : {std::pair(Qt::Key_F7, &previous), {Qt::Key_F8, &next}})
            QObject::connect(new QShortcut(key, button->window()), &QShortcut::activated, button,
                             &TouchKey::click);
        QObject::connect(&day, &QDateEdit::dateChanged, &day, [&all, show] {
            const QSignalBlocker once(all);
            all.setChecked(false);
            show();
        });
        QObject::connect(&all, &TouchKey::toggled, &day, show);
        QObject::connect(&previous, &TouchKey::clicked, &day,
                         [&day] { day.setDate(day.date().addDays(-1)); });
        QObject::connect(&next, &TouchKey::clicked, &day, [&day] { day.setDate(day.date().addDays(1)); });
    }

    /// Nothing for all days.
    [[nodiscard]] std::optional<QDate> chosen() const {
        return m_all.isChecked() ? std::nullopt : std::optional(m_day.date());
    }
    /// Goes to a day, unless all are shown; an invalid one stands for all.
    void show(QDate day) {
        if (m_all.isChecked()) return;
        if (day.isValid())
            m_day.setDate(day);
        else
            m_all.setChecked(true);
    }

  private:
    QDateEdit& m_day;
    TouchKey& m_all;
};
