#include "PropertyModel.h"

#include <templates/TemplateDocument.h>
#include <templates/TemplateKeys.h>
#include <templates/ValueText.h>
#include <ui/Theme.h>

#include <QSize>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The id of a part's index; that of a property is its part's row, counted from 1.
constexpr quintptr groupId = 0;

} // namespace

PropertyModel::PropertyModel(TemplateDocument& document, QObject* parent)
    : QAbstractItemModel(parent)
    , m_document(document)
    , m_groups(groupsOfDocument()) {
    connect(&document, &TemplateDocument::changed, this, &PropertyModel::refresh);
}

std::vector<PropertyModel::Group> PropertyModel::groupsOfDocument() const {
    std::vector<Group> groups;
    for (const Property& property : m_document.list().properties()) {
        const QString caption = groupOf(property.key);
        auto group = std::ranges::find(groups, caption, &Group::caption);
        if (group == groups.end()) group = groups.insert(group, Group{caption, {}});
        group->keys.push_back(property.key);
    }
    return groups;
}

void PropertyModel::refresh() {
    std::vector<Group> groups = groupsOfDocument();
    const bool same = std::ranges::equal(groups, m_groups, [](const Group& a, const Group& b) {
        return a.caption == b.caption && a.keys == b.keys;
    });
    if (!same) {
        beginResetModel();
        m_groups = std::move(groups);
        endResetModel();
        return;
    }
    // One value may switch others on and off.
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex group = index(row, Caption);
        emit dataChanged(index(0, Caption, group), index(rowCount(group) - 1, ValueColumn, group));
    }
}

const Property* PropertyModel::property(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == groupId) return nullptr;
    const Group& group = m_groups.at(index.internalId() - 1);
    return m_document.list().find(group.keys.at(static_cast<std::size_t>(index.row())));
}

QModelIndex PropertyModel::indexOf(const QString& key) const {
    for (std::size_t group = 0; group < m_groups.size(); ++group) {
        const auto& keys = m_groups[group].keys;
        const auto at = std::ranges::find(keys, key);
        if (at != keys.end()) return createIndex(static_cast<int>(at - keys.begin()), Caption, group + 1);
    }
    return {};
}

bool PropertyModel::isEnabled(const QModelIndex& index) const {
    const Property* p = property(index);
    return p == nullptr || isInForce(m_document.list(), p->key);
}

QModelIndex PropertyModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : groupId);
}

QModelIndex PropertyModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == groupId) return {};
    return createIndex(static_cast<int>(child.internalId()) - 1, Caption, groupId);
}

int PropertyModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return static_cast<int>(m_groups.size());
    if (parent.internalId() != groupId || parent.column() != Caption) return 0;
    return static_cast<int>(m_groups.at(static_cast<std::size_t>(parent.row())).keys.size());
}

int PropertyModel::columnCount(const QModelIndex&) const { return 2; }

QVariant PropertyModel::data(const QModelIndex& index, int role) const {
    const Property* p = property(index);
    if (role == Qt::SizeHintRole && index.column() == ValueColumn)
        return QSize(0, Theme::Current().keyHeight * 4 / 7);
    if (p == nullptr) {
        if (role == Qt::DisplayRole && index.column() == Caption)
            return m_groups.at(static_cast<std::size_t>(index.row())).caption;
        if (role == Qt::FontRole) return Theme::Current().font(Theme::Size::Normal, QFont::DemiBold);
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Caption ? p->caption : valueText(*p);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return p->description;
    case Qt::ForegroundRole:
        return isEnabled(index) ? QVariant() : Theme::Current().muted;
    case Qt::CheckStateRole:
        if (index.column() != ValueColumn || p->type != PropertyType::Boolean) return {};
        return std::get<bool>(p->value) ? Qt::Checked : Qt::Unchecked;
    default:
        return {};
    }
}

QVariant PropertyModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == Caption ? u"Eigenschaft"_s : u"Wert"_s;
}

Qt::ItemFlags PropertyModel::flags(const QModelIndex& index) const {
    const Property* p = property(index);
    if (p == nullptr) return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    // A property out of force can still be selected, so that its description tells what switches it on.
    flags |= Qt::ItemIsEnabled;
    if (p->type == PropertyType::Boolean && index.column() == ValueColumn && isEnabled(index))
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool PropertyModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const Property* p = property(index);
    if (p == nullptr || role != Qt::CheckStateRole || !(flags(index) & Qt::ItemIsUserCheckable)) return false;
    m_document.setValue(p->key, value.toInt() == Qt::Checked);
    return true;
}
