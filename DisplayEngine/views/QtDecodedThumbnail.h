#pragma once

#include "media/DecodedThumbnail.h"

#include <QImage>

#include <utility>

namespace sorvane {

// A thumbnail decoded by the GUI toolkit: what tiles draw.
class QtDecodedThumbnail final : public DecodedThumbnail {
public:
    explicit QtDecodedThumbnail(QImage image) : m_image(std::move(image)) { }

    const QImage &image() const { return m_image; }
    QSize size() const override { return m_image.size(); }
    qint64 cost() const override { return m_image.sizeInBytes(); }

private:
    QImage m_image;
};

} // namespace sorvane
