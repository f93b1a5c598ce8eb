// Strip: the marks at joints; the same shapes as in the panel's pictures.
#pragma once

#include <QPainter>

#include "platform/dialog/pde_cut_plan.h"

namespace labelcut {

/// Scissors, a blade or an open hand that points down at the middle of the painter's origin.
/// Nothing for no cut. @param size  how high the mark is; pixels.
void drawCutMark(QPainter& painter, PDECut cut, double size, const QColor& colour);

} // namespace labelcut
