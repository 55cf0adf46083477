#include "SpriteImageNode.h"

#include <QPainter>

void SpriteImageNode::setNormalizedImage(const QImage& image) {
    m_image = image;
    setChanged(true);
    m_iconImage = QImage();
}

QImage SpriteImageNode::icon() {
    constexpr int side = 24;
    if (!m_iconImage.isNull())
        return m_iconImage;
    m_iconImage = QImage(side, side, QImage::Format_ARGB32);
    m_iconImage.fill(Qt::transparent);
    if (m_image.isNull())
        return m_iconImage;
    const QImage scaled = m_image.image().scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&m_iconImage);
    painter.drawImage(side / 2 - scaled.width() / 2, side / 2 - scaled.height() / 2, scaled);
    return m_iconImage;
}

QImage SpriteImageNode::normalized(QImage image) {
    if (image.isNull())
        return QImage();
    image = std::move(image).convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = qAlpha(row[x]) == 0 ? 0 : row[x];
    }
    return image;
}
