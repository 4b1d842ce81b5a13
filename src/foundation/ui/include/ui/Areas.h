#pragma once

#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

class AreaForm;

/// The areas of the back office: one window of each at the most.
class Areas {
  public:
    using Make = std::function<AreaForm*()>;
    ~Areas() { closeAll(); }

    /// `make` builds the form; it is not shown yet. Areas are closed in the order in which they were added.
    void add(const QString& name, Make make);
    /// Makes the area's window, or brings the one that is open to the front. Raises what its making raises.
    void show(const QString& name);
    /// Closes all that are open; False when one refused.
    bool closeAll();

  private:
    struct Area {
        QString name;
        Make make;
        QPointer<AreaForm> form;
    };
    std::vector<Area> m_areas;
};
