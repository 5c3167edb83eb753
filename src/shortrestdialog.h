// Asks what each character makes of a short rest: the surges it spends, and an action point for
// all.
#pragma once

#include <QPointer>

#include "creature.h"
#include "flatdialog.h"
#include "restpreview.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QSpinBox;

// While it runs, the characters' live numbers show what would come of the rest; when it has ended,
// in whatever way, they are as they were.
class ShortRestDialog : public FlatDialog {
    Q_OBJECT

public:
    // A row for each living character of the encounter.
    explicit ShortRestDialog(QWidget *parent = nullptr);

    int exec() override;
    void onFinished() override;
    QList<RestedCreature> result() const;

private Q_SLOTS:
    void onRestValueChanged();
    void onRestFocusChanged(QWidget *old, QWidget *now);

private:
    struct Row {
        QPointer<Creature> creature;
        QSpinBox *surgeBox = nullptr;
        QSpinBox *hpBox = nullptr;
        QLabel *surgesLabel = nullptr;
        QLabel *hpLabel = nullptr;
        QLabel *apLabel = nullptr;
        QLabel *totalLabel = nullptr;
    };

    QWidget *grantRow();
    QGroupBox *buildRow(Creature *creature);
    QLabel *namedLabel(const char *name, const Creature *creature, int digits);
    void showStatus(const Row &row);

    QCheckBox *m_grantBox = nullptr;
    QList<Row> m_rows;
    RestPreview m_preview;
};
