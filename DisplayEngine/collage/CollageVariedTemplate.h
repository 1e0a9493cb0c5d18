#pragma once

#include <QList>
#include <QRectF>

namespace sorvane {

class Pcg32;

// The Varied wall's arrangements of six rectangles in the unit square, in slot order:
// the base template and its mirror images, chosen by the wall's variant index.
class CollageVariedTemplate {
public:
    static constexpr int slotCount = 6;
    // 0 the base, 1 mirrored left to right, 2 mirrored top to bottom, 3 both.
    static constexpr int variantCount = 4;

    static const QList<QRectF> &baseTemplate();
    // Any index is accepted and taken modulo `variantCount`, so a restored or mirrored
    // index from elsewhere always names a template.
    static QList<QRectF> variant(int variantIndex);
    // A variant other than `current`, so a reshuffle always visibly changes the wall.
    static int nextVariant(int current, Pcg32 &random);

    static int normalized(int variantIndex);
};

} // namespace sorvane
