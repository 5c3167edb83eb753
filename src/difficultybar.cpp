#include "difficultybar.h"

#include <QPainter>

namespace {

constexpr int Parts = 4;
constexpr int Gap = 2; // pixels between two parts
// By difficulty; they stand out from a light and from a dark background.
constexpr QRgb Colours[Parts] = {0xff4f9a4f, 0xffb8860b, 0xffd2691e, 0xffc23b3b};

} // namespace

QString difficultyText(Difficulty difficulty)
{
    switch (difficulty) {
    case Difficulty::Easy:
        return DifficultyBar::tr("Easy");
    case Difficulty::Standard:
        return DifficultyBar::tr("Standard");
    case Difficulty::Hard:
        return DifficultyBar::tr("Hard");
    case Difficulty::Deadly:
        break;
    }
    return DifficultyBar::tr("Deadly");
}

DifficultyBar::DifficultyBar(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void DifficultyBar::setDifficulty(Difficulty difficulty)
{
    setFilled(int(difficulty) + 1);
}

void DifficultyBar::clear()
{
    setFilled(0);
}

void DifficultyBar::setFilled(int parts)
{
    if (parts == m_filled)
        return;
    m_filled = parts;
    update();
}

QSize DifficultyBar::sizeHint() const
{
    const int height = fontMetrics().height();
    return {height * 5, height * 2 / 3};
}

QSize DifficultyBar::minimumSizeHint() const
{
    return {sizeHint().width() / 2, sizeHint().height()};
}

void DifficultyBar::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const int width = (this->width() - (Parts - 1) * Gap) / Parts;
    for (int i = 0; i < Parts; ++i) {
        const QRect part(i * (width + Gap), 0, width, height());
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(i < m_filled ? QColor(Colours[m_filled - 1])
                                      : palette().color(QPalette::Base));
        painter.drawRect(part.adjusted(0, 0, -1, -1));
    }
}

#include "moc_difficultybar.cpp"
