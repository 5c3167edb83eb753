// What the players see at this moment, as a small picture for a DM who sits with her back to their
// screen.
#pragma once

#include <QElapsedTimer>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

class QPushButton;

// Drawn anew at most four times a second, after something was painted in the Player's Display, and
// only while this is to be seen. Says so instead when that window is closed or curtained.
class PlayersPreview : public QWidget {
    Q_OBJECT

public:
    explicit PlayersPreview(QWidget *parent = nullptr);

    // What stands in place of the picture; empty while there is one.
    QString notice() const;
    // How often the picture was drawn.
    int drawCount() const { return m_drawCount; }
    // For when the window or its curtain was shown or hidden.
    void refresh();
    QSize sizeHint() const override { return {280, 220}; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRect pictureArea() const;
    void draw();
    void redrawSoon();

    QPushButton *m_curtain;
    QPixmap m_picture;
    QTimer m_timer;
    QElapsedTimer m_sinceDrawn;
    bool m_isDrawing = false;
    int m_drawCount = 0;
};
