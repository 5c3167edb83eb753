// The bar that tells how hard an encounter is: one to four of its four parts are filled.
#pragma once

#include <QWidget>

#include "encounterdifficulty.h"

class DifficultyBar : public QWidget {
    Q_OBJECT

public:
    explicit DifficultyBar(QWidget *parent = nullptr);

    void setDifficulty(Difficulty difficulty);
    // No part is filled.
    void clear();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void setFilled(int parts);

    int m_filled = 0;
};

// "Easy", "Standard", "Hard", "Deadly".
QString difficultyText(Difficulty difficulty);
