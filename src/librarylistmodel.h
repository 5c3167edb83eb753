// The lists of the two library windows: a monster or a character for each row.
#pragma once

#include <QAbstractTableModel>
#include <QPointer>

#include "collection.h"
#include "creature.h"

class QItemSelection;

// One column over the entries of a collection that aren't deleted and pass the filter. Whoever
// changes the collection calls refresh() before the event loop runs again. The collection may go
// before the model.
class LibraryListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    // Null before the collection is made and after shut-down.
    virtual Collection<Creature> *collection() const = 0;
    virtual const QString &nameOf(const Creature &creature) const = 0;

    // Null for a row out of range, or where a creature went without refresh().
    Creature *creatureAt(int row) const;
    // -1 for one that has no row.
    int rowOf(const Creature *creature) const;
    // The row that was selected last; null without one.
    Creature *selected() const { return m_selected; }
    // Rows whose name holds the text, ignoring case. True when that changes which rows there are.
    bool setFilter(const QString &text);
    // Reads the collection again. A view loses its selection by it.
    void refresh();
    // After a change of what one row says, but not of its place.
    void noteChanged(const Creature *creature);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void doSelectionChanged();

public Q_SLOTS:
    // Of the view's selection model.
    void onInternalSelectionChanged(const QItemSelection &selected,
                                    const QItemSelection &deselected);

private:
    bool isShown(const Creature &creature) const;

    QList<QPointer<Creature>> m_rows;
    QPointer<Creature> m_selected;
    QString m_filter;
};

class TemplateListModel : public LibraryListModel {
public:
    using LibraryListModel::LibraryListModel;
    Collection<Creature> *collection() const override;
    const QString &nameOf(const Creature &creature) const override { return creature.group(); }
};

class CharacterListModel : public LibraryListModel {
public:
    using LibraryListModel::LibraryListModel;
    Collection<Creature> *collection() const override;
    const QString &nameOf(const Creature &creature) const override { return creature.name(); }
};
