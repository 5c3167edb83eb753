#include "librarypane.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include "creature.h"
#include "librarylistmodel.h"

LibraryView::LibraryView(QWidget *parent) : QListView(parent)
{
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void LibraryView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier)
        Q_EMIT doDeletePressed();
    else
        QListView::keyPressEvent(event);
}

LibraryPane::LibraryPane(LibraryListModel *model, QWidget *parent)
    : QWidget(parent), m_model(model), m_view(new LibraryView),
      m_filter(filterEdit(QStringLiteral("filterEdit"),
                          [this](QObject *edit) { onFilterChanged(edit); }))
{
    m_model->setParent(this);
    m_view->setModel(m_model);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, m_model,
            &LibraryListModel::onInternalSelectionChanged);
    connect(m_model, &LibraryListModel::doSelectionChanged, this, [this] {
        if (!m_isRefreshing)
            Q_EMIT doSelectionChanged();
    });
    setLayout(vBox(m_filter, m_view));
    refresh();
}

Creature *LibraryPane::selected() const
{
    return m_model->selected();
}

void LibraryPane::selectRow(int row)
{
    if (row < 0) {
        m_view->clearSelection();
        m_view->setCurrentIndex({});
        return;
    }
    const QModelIndex index = m_model->index(row, 0);
    m_view->setCurrentIndex(index);
    m_view->scrollTo(index);
}

void LibraryPane::select(Creature *creature)
{
    if (creature && m_model->rowOf(creature) < 0) {
        m_filter->clear();
        m_model->setFilter(QString());
        refresh();
    }
    selectRow(m_model->rowOf(creature));
}

void LibraryPane::refresh()
{
    Creature *before = selected();
    const int row = m_view->currentIndex().row();
    m_isRefreshing = true;
    m_model->refresh();
    int now = m_model->rowOf(before);
    if (now < 0 && row >= 0)
        now = qMin(row, m_model->rowCount() - 1);
    selectRow(now);
    m_model->onInternalSelectionChanged(m_view->selectionModel()->selection(), {});
    m_isRefreshing = false;
    if (selected() != before || !before)
        Q_EMIT doSelectionChanged();
}

void LibraryPane::onFilterChanged(QObject * /*object*/)
{
    Creature *before = selected();
    if (!m_model->setFilter(m_filter->text()))
        return;
    // A creature that the filter hides isn't selected any more.
    m_model->onInternalSelectionChanged({}, {});
    selectRow(m_model->rowOf(before));
}

#include "moc_librarypane.cpp"
