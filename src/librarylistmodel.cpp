#include "librarylistmodel.h"

#include <QItemSelection>

#include "characters.h"
#include "monsters.h"
#include "readablecolours.h"
#include "text.h"

#include <QGuiApplication>
#include <QPalette>

Creature *LibraryListModel::creatureAt(int row) const
{
    return m_rows.value(row);
}

int LibraryListModel::rowOf(const Creature *creature) const
{
    return creature ? int(m_rows.indexOf(creature)) : -1;
}

bool LibraryListModel::isShown(const Creature &creature) const
{
    return !creature.isDeleted() && nameOf(creature).contains(m_filter, Qt::CaseInsensitive);
}

bool LibraryListModel::setFilter(const QString &text)
{
    if (text == m_filter)
        return false;
    m_filter = text;
    refresh();
    return true;
}

void LibraryListModel::refresh()
{
    beginResetModel();
    m_rows.clear();
    const Collection<Creature> *creatures = collection();
    for (int i = 0; creatures && i < creatures->count(); ++i)
        if (Creature *creature = creatures->at(i); isShown(*creature))
            m_rows << creature;
    endResetModel();
}

void LibraryListModel::noteChanged(const Creature *creature)
{
    const int row = rowOf(creature);
    if (row >= 0)
        Q_EMIT dataChanged(index(row, 0), index(row, 0));
}

int LibraryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int LibraryListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant LibraryListModel::data(const QModelIndex &index, int role) const
{
    const Creature *creature = index.model() == this ? creatureAt(index.row()) : nullptr;
    if (!creature)
        return {};
    switch (role) {
    case Qt::DisplayRole: {
        const QString name = shortened(nameOf(*creature), LongestName);
        return creature->isModified() ? QString(name + u'*') : name;
    }
    case Qt::ForegroundRole:
        return creature->isInvalid()
            ? readableColour(QLatin1String("red"), QGuiApplication::palette())
            : QVariant();
    // The colour and the star in words.
    case Qt::AccessibleTextRole: {
        QStringList texts {shortened(nameOf(*creature), LongestName)};
        if (creature->isModified())
            texts << tr("not saved");
        if (creature->isInvalid())
            texts << tr("could not be read");
        return texts.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

QVariant LibraryListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section != 0 || orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return tr("Name");
}

void LibraryListModel::onInternalSelectionChanged(const QItemSelection &selected,
                                                  const QItemSelection & /*deselected*/)
{
    const QModelIndexList indexes = selected.indexes();
    Creature *creature = indexes.isEmpty() ? nullptr : creatureAt(indexes.last().row());
    if (creature == m_selected)
        return;
    m_selected = creature;
    Q_EMIT doSelectionChanged();
}

Collection<Creature> *TemplateListModel::collection() const
{
    return theMonsters;
}

Collection<Creature> *CharacterListModel::collection() const
{
    return theCharacters;
}

#include "moc_librarylistmodel.cpp"
