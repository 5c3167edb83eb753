// The view of the tree of prepared encounters.
#pragma once

#include <QTreeView>

#include "encounterlistmodel.h"

// Hides the encounters that are deleted or that the filter doesn't let through.
class EncounterView : public QTreeView {
    Q_OBJECT

public:
    // The model stays the caller's.
    explicit EncounterView(EncounterListModel *model, QWidget *parent = nullptr);

    // An empty adventure, like Encounters::allAdventures(), stands for any. An encounter that the
    // filter hides isn't selected any more.
    void setFilter(const QString &text, const QString &adventure);
    // After a change of what the filter looks at. The selected encounter stays unless it is
    // deleted.
    void applyFilter();
    // Model and rows anew; selection and open rows stay where their encounter is still there.
    void refresh();
    // Opens the rows above it and shows it. A position without an encounter selects nothing.
    void select(const EncounterPlace &position);
    // The shown encounter that follows, or else the one ahead; -1 without either.
    int neighbourOf(int row) const;

Q_SIGNALS:
    void doDeletePressed();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void hideRows(int keptRow);

    EncounterListModel *m_model;
    QString m_text;
    QString m_adventure;
};
