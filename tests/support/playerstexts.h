// What the Player's Display says, to whoever looks at it by whatever means.
#pragma once

#include <QAbstractItemView>
#include <QLabel>

#include "playerswindow.h"

// Cells in every role of a text, labels, titles, tool tips, accessible names, one a line.
inline QString playersTexts(const PlayersWindow &window)
{
    QStringList texts {window.windowTitle()};
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        texts << widget->toolTip() << widget->statusTip() << widget->whatsThis()
              << widget->accessibleName() << widget->accessibleDescription();
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            texts << label->text();
        const auto *view = qobject_cast<const QAbstractItemView *>(widget);
        const QAbstractItemModel *model = view ? view->model() : nullptr;
        for (int row = 0; model && row < model->rowCount(); ++row)
            for (int column = 0; column < model->columnCount(); ++column)
                for (const int role :
                     {Qt::DisplayRole, Qt::EditRole, Qt::ToolTipRole, Qt::StatusTipRole,
                      Qt::WhatsThisRole, Qt::AccessibleTextRole, Qt::AccessibleDescriptionRole})
                    texts << model->index(row, column).data(role).toString();
    }
    texts.removeAll(QString());
    return texts.join(u'\n');
}
