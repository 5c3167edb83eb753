// What the players see while the DM prepares something.
#pragma once

#include <QPixmap>
#include <QWidget>

// Opaque pictures over the whole of a window and of its docks, which may float.
class PlayersCurtain : public QObject {
    Q_OBJECT

public:
    // Covers `window` and each widget that is added, as long as they live.
    explicit PlayersCurtain(QWidget *window);

    void cover(QWidget *widget);
    bool isDown() const { return m_isDown; }
    void setDown(bool down);

private:
    QList<QWidget *> m_cloths;
    bool m_isDown = false;
};
