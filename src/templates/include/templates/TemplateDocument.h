#pragma once

#include <templates/PropertiesList.h>
#include <templates/TemplateKind.h>

#include <QObject>

/// A template while it is worked on: the values, what of them is saved, and the way back.
class TemplateDocument : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    enum class Opened {
        Yes,
        NotLoaded,  ///< missing, damaged or no file of properties
        NoTemplate, ///< properties, but those of no document
    };
    /// The document stays as it was unless the answer is Yes. The four forms of a shop get the width of order
    /// numbers when they lack it, and are saved at once; no other file is changed.
    [[nodiscard]] Opened open(const QString& path);
    /// False when the file cannot be written.
    [[nodiscard]] bool save();
    /// The document goes by the new name from then on.
    [[nodiscard]] bool saveAs(const QString& path);

    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] TemplateKind kind() const { return m_kind; }
    [[nodiscard]] const PropertiesList& list() const { return m_list; }
    /// There is something that is not in the file.
    [[nodiscard]] bool isModified() const { return !(m_list == m_saved); }

    /// One step of undo. Numbers and texts grow by keystrokes: changes of the same one in a row are one step
    /// until endStep(). Raises 5 as PropertiesList does.
    void setValue(QStringView key, PropertyValue value);
    void endStep() { m_growing.clear(); }

    [[nodiscard]] bool canUndo() const { return !m_before.empty(); }
    [[nodiscard]] bool canRedo() const { return !m_after.empty(); }
    void undo();
    void redo();
    /// Back to what was saved last; can be undone.
    void revert();
    /// There is a delivered template for this file.
    [[nodiscard]] bool hasShipped() const;
    /// To the values as delivered; can be undone. False when they cannot be loaded.
    [[nodiscard]] bool restoreShipped();

  signals:
    /// `key` is empty when more than one property may have changed.
    void changed(const QString& key);
    void saved();

  private:
    void remember();
    void replace(PropertiesList list);

    QString m_path;
    TemplateKind m_kind = TemplateKind::Form;
    PropertiesList m_list, m_saved;
    std::vector<PropertiesList> m_before, m_after; ///< of undo and redo, the nearest at the back
    QString m_growing;                             ///< the key whose next change belongs to the last step
};
