#include "vdcLineSegment.h"

DtVdcLineSegment::DtVdcLineSegment()
    : DtVdcLineSegment(1.0, DtVdcColor::DtVdcWhite, 0xFFFFFFFFu, 1, DtVdcSegmentStraight,
                       DtVdcSegmentNoArrow) {}

DtVdcLineSegment::DtVdcLineSegment(double percentage, DtVdcColor color, unsigned int pattern,
                                   unsigned int thickness, DtVdcSegmentStyle style,
                                   DtVdcSegmentArrowStyle arrowStyle)
    : color_(color),
      pattern_(pattern),
      thickness_(thickness),
      percentage_(percentage),
      style_(style),
      arrowStyle_(arrowStyle) {}
