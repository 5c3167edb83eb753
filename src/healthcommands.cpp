// The main window's commands on hit points, surges and rests.
#include "appendevent.h"
#include "creaturetableview.h"
#include "encounter.h"
#include "encountercommands.h"
#include "hpbox.h"
#include "mainwindow.h"
#include "shortrestdialog.h"
#include "vitalityevents.h"

void MainWindow::onHit()
{
    if (!theHistory->getStream())
        return;
    const QList<Creature *> targets = selectedCreatures();
    if (m_hpBox->value() > 0 && !targets.isEmpty())
        appendEvent<DamageEvent>(theEncounter->current(), targets, m_hpBox->value());
    endHealthFlow();
}

void MainWindow::onHeal()
{
    if (!theHistory->getStream())
        return;
    const QList<Creature *> targets = selectedCreatures();
    if (m_hpBox->value() > 0 && !targets.isEmpty()) {
        const int surges = m_surgeMode ? 1 : 0;
        appendEvent<HealEvent>(theEncounter->current(), targets, surges, m_hpBox->value());
        m_hpBox->setValue(0);
    }
    endHealthFlow();
}

void MainWindow::endHealthFlow()
{
    m_surgeMode = false;
    m_hpBox->selectAll();
    m_table->setFocus();
    updateHealthActions();
}

void MainWindow::onSetTempHP()
{
    if (!theHistory->getStream())
        return;
    const QList<Creature *> targets = selectedCreatures();
    if (m_hpBox->value() > 0 && !targets.isEmpty()) {
        appendEvent<SetTempHPEvent>(targets, m_hpBox->value());
        m_hpBox->setValue(0);
    }
    m_surgeMode = false;
    focusHPBox();
    updateHealthActions();
}

void MainWindow::onSurge()
{
    const Creature *first = selectedCreature(0);
    if (!first) {
        m_hpBox->setValue(0);
        updateHealthActions();
        return;
    }
    m_surgeMode = !m_surgeMode;
    m_hpBox->setValue(m_surgeMode ? first->hsValue() : 0);
    focusHPBox();
    updateHealthActions();
}

void MainWindow::onHPValueChanged()
{
    if (m_surgeMode && (!selectedCreature(0) || m_hpBox->value() == 0))
        m_surgeMode = false;
    updateHealthActions();
}

void MainWindow::onShortRest()
{
    QList<RestedCreature> rested;
    {
        ShortRestDialog dialog;
        if (!dialog.exec())
            return;
        rested = dialog.result();
    }
    appendEvent<ShortRestEvent>(rested);
}

void MainWindow::onExtendedRest()
{
    takeExtendedRest();
}
