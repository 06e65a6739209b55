// Slice pictures of an inspected run: one cell layer of the grid, drawn as a PNG.
#pragma once

#include <string>

#include "InspectRun.h"
#include "LeakCheck.h"

// One cell layer: the cells with index intCell (0-based) on axis intAxis (0 X, 1 Y, 2 Z).
struct SlicePlane {
    int intAxis = 0;
    int intCell = 0;
};

// Picks a plane from an option's text: "i=N", "j=N" or "k=N" for the solver's 1-based cell index
// N, "x=V", "y=V" or "z=V" for the cell holding the coordinate V. Throws InspectError.
SlicePlane ParseSlicePlane(const InspectRun& run, const std::string& strText);

// The middle cell layer normal to an axis.
SlicePlane MiddleSlicePlane(const InspectRun& run, int intAxis);

// Where the picture of a plane puts things: the plane's two other axes, in axis order, map to
// pixel columns (rising to the right) and rows (the second axis rising upwards). The picture shows
// the bodies' extent with a margin of a quarter of it on each side (the whole plane with
// blnWhole, or when no body meets the grid), cut to the grid; coordinates are marked to the left
// of it and below it.
class SliceView {
  public:
    SliceView(const InspectRun& run, const SlicePlane& plane, bool blnWhole = true);
    int Width() const { return m_intWidth; }
    int Height() const { return m_intHeight; }
    // Pixel positions of a coordinate: X and Y exact, Column and Row rounded. Only points of the
    // grid's extent are sure to fit in an int.
    double X(double u) const;
    double Y(double v) const;
    int Column(double u) const;
    int Row(double v) const;
    int AxisU() const { return m_intU; }
    int AxisV() const { return m_intV; }
    // The coordinates shown, low and high, along the picture's axes (0 across, 1 up).
    double Low(int intSide) const { return m_dblLow[intSide]; }
    double High(int intSide) const { return m_dblHigh[intSide]; }
    double Scale() const { return m_dblScale; }

  private:
    int m_intU, m_intV;
    double m_dblLow[2], m_dblHigh[2];
    double m_dblScale;
    int m_intWidth, m_intHeight;
};

// Colours of the picture, RGB.
const unsigned char g_rgbBlockedFill[3] = {70, 110, 180};
const unsigned char g_rgbBodyOutline[3] = {215, 40, 30};
const unsigned char g_rgbLeakedFill[3] = {245, 170, 60};
const unsigned char g_rgbLeakPath[3] = {40, 170, 70};
const unsigned char g_rgbRotorDisc[3] = {150, 60, 190};

// Draws the plane: grid lines (thinned where cells get small), blocked cells filled, each body's
// cut outline over them, and a legend of the plane and the counts below. Writes it as a PNG;
// throws InspectError when the file can't be written.
// Leaked cells and leak paths of vecLeaks are filled in their own colours; rotor discs are drawn
// as their cut: a circle in a plane across their axis, a rectangle in a plane along it.
void WriteSlicePicture(const InspectRun& run, const std::vector<BodyLeak>& vecLeaks,
                       const SlicePlane& plane, const std::string& strPath, bool blnWhole = true);

// The plane through the last step of a leak path: normal to the axis after the step's own.
SlicePlane LeakSlicePlane(const BodyLeak& leak);

// The file name of a plane's picture: "slice_K11.png" for the 1-based index 11 normal to Z.
std::string SliceFileName(const SlicePlane& plane);
