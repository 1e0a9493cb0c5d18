#include "collage/CollageVariedTemplate.h"

#include "bundle/Pcg32.h"

namespace sorvane {

const QList<QRectF> &CollageVariedTemplate::baseTemplate()
{
    static const QList<QRectF> base {
        {0.0, 0.0, 0.6, 0.62},
        {0.6, 0.0, 0.4, 0.31},
        {0.6, 0.31, 0.4, 0.31},
        {0.0, 0.62, 0.3, 0.38},
        {0.3, 0.62, 0.3, 0.38},
        {0.6, 0.62, 0.4, 0.38},
    };
    return base;
}

int CollageVariedTemplate::normalized(int variantIndex)
{
    const int index = variantIndex % variantCount;
    return index < 0 ? index + variantCount : index;
}

QList<QRectF> CollageVariedTemplate::variant(int variantIndex)
{
    const int index = normalized(variantIndex);
    const bool mirrorX = index & 1;
    const bool mirrorY = index & 2;
    QList<QRectF> rects = baseTemplate();
    for (QRectF &rect : rects) {
        const double x = mirrorX ? 1.0 - (rect.x() + rect.width()) : rect.x();
        const double y = mirrorY ? 1.0 - (rect.y() + rect.height()) : rect.y();
        rect.moveTo(x, y);
    }
    return rects;
}

int CollageVariedTemplate::nextVariant(int current, Pcg32 &random)
{
    const int offset = 1 + int(random.next(quint32(variantCount - 1)));
    return normalized(normalized(current) + offset);
}

} // namespace sorvane
