#include "vcNames.h"

namespace vcnames {

const char* drawType(int type) {
  switch (type) {
    case 2489:
      return "DtVdcUndefined";
    case 2510:
      return "DtVdcCommand";
    case 2511:
      return "DtVdcCommandRemove";
    case 2512:
      return "DtVdcCommandHide";
    case 2513:
      return "DtVdcCommandShow";
    case 2514:
      return "DtVdcCommandAddToLayer";
    case 2515:
      return "DtVdcCommandRemoveFromLayer";
    case 2520:
      return "DtVdcLine";
    case 2521:
      return "DtVdc2DLine";
    case 2522:
      return "DtVdc3DLine";
    case 2530:
      return "DtVdcSegmentedLine";
    case 2531:
      return "DtVdc2DSegmentedLine";
    case 2532:
      return "DtVdc3DSegmentedLine";
    case 2540:
      return "DtVdcPolyObject";
    case 2541:
      return "DtVdcCircle";
    case 2542:
      return "DtVdcSphere";
    case 2543:
      return "DtVdcSquare";
    case 2544:
      return "DtVdcCube";
    case 2545:
      return "DtVdcCylinder";
    case 2550:
      return "DtVdcTriangle";
    case 2551:
      return "DtVdc2DTriangle";
    case 2552:
      return "DtVdc3DTriangle";
    case 2553:
      return "DtVdcArea";
    case 2555:
      return "DtVdc3DArea";
    case 2560:
      return "DtVdcText";
    case 2561:
      return "DtVdc2DText";
    case 2562:
      return "DtVdc3DText";
    case 2570:
      return "DtVdcAttribute";
    case 2571:
      return "DtVdcAttributeGroupTemplate";
    case 2572:
      return "DtVdcAttributeGroup";
    case 2573:
      return "DtVdcAttributeNoValue";
    case 2574:
      return "DtVdcAttributeSingleValue";
    case 2575:
      return "DtVdcAttributeGraphicSingleValue";
    case 2576:
      return "DtVdcAttributeGraphicListValue";
    case 2577:
      return "DtVdcAttributeBitmap";
    case 2580:
      return "DtVdcAttributeUpdate";
    case 2581:
      return "DtVdcAttributeValueSet";
    case 2582:
      return "DtVdcAttributeValueReset";
    case 2583:
      return "DtVdcAttributeValueSetText";
    case 2590:
      return "DtVdcLayer";
    default:
      return nullptr;
  }
}

}  // namespace vcnames
