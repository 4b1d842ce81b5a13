#pragma once

#include <QAbstractItemModel>

#include <vector>

class TemplateDocument;
struct Property;

/// The properties of a template as a tree: the parts of the page, below each its properties with their
/// values. A truth value can be ticked in the list; all other values are changed beside it.
class PropertyModel : public QAbstractItemModel {
    Q_OBJECT

  public:
    enum Column { Caption, ValueColumn };

    explicit PropertyModel(TemplateDocument& document, QObject* parent = nullptr);

    /// nullptr for a part of the page.
    [[nodiscard]] const Property* property(const QModelIndex& index) const;
    /// The caption of a property; invalid for a key that the template lacks.
    [[nodiscard]] QModelIndex indexOf(const QString& key) const;
    [[nodiscard]] bool isEnabled(const QModelIndex& index) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

  private:
    struct Group {
        QString caption;
        std::vector<QString> keys;
    };

    [[nodiscard]] std::vector<Group> groupsOfDocument() const;
    void refresh();

    TemplateDocument& m_document;
    std::vector<Group> m_groups;
};
