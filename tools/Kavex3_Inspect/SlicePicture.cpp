// Draws a slice picture into an RGB canvas and writes it through libpng.
#include "SlicePicture.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "PixelFont.h"

namespace {

const int s_intMargin = 20;
const int s_intLeft = 110;            // room for the coordinates left of the picture
const int s_intBottom = 40;           // and below it
const int s_intPictureSide = 800;     // the longer side of the picture, at least
const int s_intLargestSide = 2000;    // and at most, from the cell count
const int s_intLongestSide = 4000;    // and at most, to widen a thin domain
const int s_intCellPixels = 5;        // pixels a cell is given, within those bounds
const int s_intShortSide = 200;       // a thin domain's short side, at least
const int s_intTickGap = 100;         // pixels between coordinate marks, about
const double s_dblBodyMargin = 0.25;  // of the bodies' extent, around it in the default view
const int s_intGlyphScale = 2;
const int s_intLineHeight = 9 * s_intGlyphScale;
const int s_intLegendLines = 5;
const int s_intMinLineGap = 6;  // grid lines closer than this to the last one drawn are dropped

const unsigned char s_rgbWhite[3] = {255, 255, 255};
const unsigned char s_rgbGridLine[3] = {185, 185, 185};
const unsigned char s_rgbGridLineOnFill[3] = {45, 75, 135};
const unsigned char s_rgbText[3] = {20, 20, 20};

const char* const s_szAxis = "XYZ";
const char* const s_szIndex = "IJK";

class Canvas {
  public:
    Canvas(int w, int h) : m_w(w), m_h(h), m_vecRgb(static_cast<size_t>(w) * h * 3, 255) {
        Unclip();
    }
    int Width() const { return m_w; }
    int Height() const { return m_h; }
    unsigned char* At(int x, int y) { return &m_vecRgb[(static_cast<size_t>(y) * m_w + x) * 3]; }
    void Set(int x, int y, const unsigned char* rgb) {
        if (x >= m_clip[0] && y >= m_clip[1] && x < m_clip[2] && y < m_clip[3])
            std::copy(rgb, rgb + 3, At(x, y));
    }
    // Drawing stays within x0..x1, y0..y1 (half-open) until Unclip.
    void Clip(int x0, int y0, int x1, int y1) {
        m_clip[0] = std::max(x0, 0);
        m_clip[1] = std::max(y0, 0);
        m_clip[2] = std::min(x1, m_w);
        m_clip[3] = std::min(y1, m_h);
    }
    void Unclip() { Clip(0, 0, m_w, m_h); }
    bool Is(int x, int y, const unsigned char* rgb) {
        return x >= 0 && y >= 0 && x < m_w && y < m_h && std::equal(rgb, rgb + 3, At(x, y));
    }
    void Fill(int x0, int y0, int x1, int y1, const unsigned char* rgb) {
        for (int y = std::max(y0, 0); y < std::min(y1, m_h); ++y)
            for (int x = std::max(x0, 0); x < std::min(x1, m_w); ++x) Set(x, y, rgb);
    }
    // A thick line: a square of side intWidth at every step, clipped to the canvas first.
    void Line(double x0, double y0, double x1, double y1, int intWidth, const unsigned char* rgb) {
        double t0 = 0, t1 = 1;
        const double dx = x1 - x0, dy = y1 - y0;
        auto clip = [&](double p, double q) {  // keeps the part where p * t <= q
            if (p == 0) return q >= 0;
            const double r = q / p;
            if (p < 0) {
                if (r > t1) return false;
                t0 = std::max(t0, r);
            } else {
                if (r < t0) return false;
                t1 = std::min(t1, r);
            }
            return true;
        };
        if (!clip(-dx, x0 + intWidth) || !clip(dx, m_w + intWidth - x0) ||
            !clip(-dy, y0 + intWidth) || !clip(dy, m_h + intWidth - y0))
            return;
        const double xa = x0 + dx * t0, ya = y0 + dy * t0, xb = x0 + dx * t1, yb = y0 + dy * t1;
        const int intSteps =
            static_cast<int>(std::ceil(std::max(std::fabs(xb - xa), std::fabs(yb - ya))));
        for (int s = 0; s <= intSteps; ++s) {
            const double t = intSteps ? static_cast<double>(s) / intSteps : 0.0;
            const int x = static_cast<int>(std::lround(xa + (xb - xa) * t)) - intWidth / 2;
            const int y = static_cast<int>(std::lround(ya + (yb - ya) * t)) - intWidth / 2;
            Fill(x, y, x + intWidth, y + intWidth, rgb);
        }
    }
    int Text(int x, int y, const std::string& str, const unsigned char* rgb) {
        for (char c : str) {
            const unsigned char* rows = PixelGlyph(c);
            for (int r = 0; r < 7; ++r)
                for (int col = 0; col < 5; ++col)
                    if (rows[r] & (0x10 >> col))
                        Fill(x + col * s_intGlyphScale, y + r * s_intGlyphScale,
                             x + (col + 1) * s_intGlyphScale, y + (r + 1) * s_intGlyphScale, rgb);
            x += 6 * s_intGlyphScale;
        }
        return x;
    }
    void WritePng(const std::string& strPath) const;

  private:
    int m_w, m_h;
    int m_clip[4];
    std::vector<unsigned char> m_vecRgb;
};

void Canvas::WritePng(const std::string& strPath) const {
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(strPath.c_str(), "wb"), &std::fclose);
    if (!file) throw InspectError(strPath + ": cannot write");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        throw InspectError(strPath + ": cannot write the picture");
    }
    png_init_io(png, file.get());
    png_set_IHDR(png, info, m_w, m_h, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < m_h; ++y)
        png_write_row(png, const_cast<png_bytep>(&m_vecRgb[static_cast<size_t>(y) * m_w * 3]));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    if (std::fflush(file.get()) != 0) throw InspectError(strPath + ": cannot write");
}

// The box of all bodies' points along the picture's two axes, if it meets the grid.
bool BodiesBox(const InspectRun& run, const int* axes, double dblBox[2][2]) {
    bool blnAny = false;
    for (int s = 0; s < 2; ++s) {
        dblBox[s][0] = HUGE_VAL;
        dblBox[s][1] = -HUGE_VAL;
    }
    auto add = [&](double u, double v) {
        blnAny = true;
        for (int s = 0; s < 2; ++s) {
            dblBox[s][0] = std::min(dblBox[s][0], s == 0 ? u : v);
            dblBox[s][1] = std::max(dblBox[s][1], s == 0 ? u : v);
        }
    };
    for (const InspectBody& body : run.vecBodies)
        for (const FEL_vector3<float>& p : body.surface.vecPoints) add(p[axes[0]], p[axes[1]]);
    for (const InspectRotor& rotor : run.vecRotors)
        for (int corner = 0; corner < 4; ++corner) {
            double d[2];
            for (int s = 0; s < 2; ++s)
                d[s] = (corner >> s & 1 ? 1 : -1) *
                       (axes[s] == rotor.intAxis ? rotor.dblHalfThickness : rotor.dblRadius);
            add(rotor.v3fCentre[axes[0]] + d[0], rotor.v3fCentre[axes[1]] + d[1]);
        }
    for (int s = 0; s < 2 && blnAny; ++s)
        blnAny = dblBox[s][1] >= run.vecAxes[axes[s]].front() &&
                 dblBox[s][0] <= run.vecAxes[axes[s]].back();
    return blnAny;
}

// The cells of an axis that lie at least partly between lo and hi.
int CellsWithin(const std::vector<float>& vecAxis, double lo, double hi) {
    int n = 0;
    for (size_t c = 0; c + 1 < vecAxis.size(); ++c) n += vecAxis[c + 1] > lo && vecAxis[c] < hi;
    return n;
}

std::string Number(double dbl) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%g", dbl);
    return buf;
}

// The pixel positions of the grid lines to draw: the first and the last, and each other line that
// stands at least s_intMinLineGap from the last one kept. Sets blnThinned when a line is left out.
std::vector<int> ShownLines(const std::vector<int>& vecPixels, bool& blnThinned) {
    std::vector<int> vecShown;
    for (size_t n = 0; n < vecPixels.size(); ++n) {
        const int intGap =
            vecShown.empty() ? s_intMinLineGap : std::abs(vecPixels[n] - vecShown.back());
        if (intGap >= s_intMinLineGap || n + 1 == vecPixels.size())
            vecShown.push_back(vecPixels[n]);
        else if (intGap > 0)
            blnThinned = true;
    }
    return vecShown;
}

// Kinds of the plane's cells, U fastest: 0 free, 1 blocked, 2 leaked, 3 on a leak path.
std::vector<char> CellKinds(const InspectRun& run, const std::vector<BodyLeak>& vecLeaks,
                            const SlicePlane& plane, int u, int v, long& intBlocked,
                            long& intLeaked) {
    const int a = plane.intAxis;
    std::vector<char> vecKinds(static_cast<size_t>(run.Cells(u)) * run.Cells(v), 0);
    auto mark = [&](const std::array<int, 3>& cell, char chKind) {
        if (cell[a] != plane.intCell) return false;
        vecKinds[static_cast<size_t>(cell[v]) * run.Cells(u) + cell[u]] = chKind;
        return true;
    };
    for (const FEL_vector3<int>& v3i : run.vecBlocked)
        intBlocked += mark({v3i.x - 1, v3i.y - 1, v3i.z - 1}, 1);
    for (const BodyLeak& leak : vecLeaks)
        for (const auto& cell : leak.vecLeaked) intLeaked += mark(cell, 2);
    for (const BodyLeak& leak : vecLeaks)
        for (const auto& cell : leak.vecPath) mark(cell, 3);
    return vecKinds;
}

void DrawCells(Canvas& canvas, const SliceView& view, const InspectRun& run,
               const std::vector<char>& vecKinds) {
    const int u = view.AxisU(), v = view.AxisV();
    const std::vector<float>& vecU = run.vecAxes[u];
    const std::vector<float>& vecV = run.vecAxes[v];
    const unsigned char* const rgbKind[4] = {nullptr, g_rgbBlockedFill, g_rgbLeakedFill,
                                             g_rgbLeakPath};
    for (int j = 0; j < run.Cells(v); ++j) {
        if (vecV[j + 1] < view.Low(1) || vecV[j] > view.High(1)) continue;
        for (int i = 0; i < run.Cells(u); ++i)
            if (const char chKind = vecKinds[static_cast<size_t>(j) * run.Cells(u) + i])
                if (vecU[i + 1] >= view.Low(0) && vecU[i] <= view.High(0))
                    canvas.Fill(view.Column(vecU[i]), view.Row(vecV[j + 1]),
                                view.Column(vecU[i + 1]), view.Row(vecV[j]), rgbKind[int(chKind)]);
    }
}

// Grid lines, one pixel wide, darker over blocked cells so that their cells stay countable.
// True when lines were left out where they crowd.
bool DrawGridLines(Canvas& canvas, const SliceView& view, const InspectRun& run) {
    bool blnThinned = false;
    std::vector<int> vecLines[2];
    const int axes[2] = {view.AxisU(), view.AxisV()};
    for (int s = 0; s < 2; ++s) {
        for (float f : run.vecAxes[axes[s]])
            if (f >= view.Low(s) && f <= view.High(s))
                vecLines[s].push_back(s == 0 ? view.Column(f) : view.Row(f));
        vecLines[s] = ShownLines(vecLines[s], blnThinned);
    }
    auto gridLine = [&](int x0, int y0, int x1, int y1) {
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                canvas.Set(x, y,
                           canvas.Is(x, y, g_rgbBlockedFill) ? s_rgbGridLineOnFill : s_rgbGridLine);
    };
    const int left = view.Column(view.Low(0)), right = view.Column(view.High(0));
    const int top = view.Row(view.High(1)), bottom = view.Row(view.Low(1));
    for (int x : vecLines[0]) gridLine(x, top, x, bottom);
    for (int y : vecLines[1]) gridLine(left, y, right, y);
    return blnThinned;
}

// Each triangle that the plane cuts leaves one segment of the body's outline.
void DrawOutlines(Canvas& canvas, const SliceView& view, const InspectRun& run,
                  const SlicePlane& plane, int intWidth) {
    const int a = plane.intAxis, u = view.AxisU(), v = view.AxisV();
    const double dblPlane =
        0.5 * (double(run.vecAxes[a][plane.intCell]) + run.vecAxes[a][plane.intCell + 1]);
    for (const InspectBody& body : run.vecBodies) {
        const InspectSurface& surface = body.surface;
        for (const auto& tri : surface.vecTriangles) {
            double seg[2][2];
            int n = 0;
            for (int e = 0; e < 3 && n < 2; ++e) {
                const FEL_vector3<float>& p = surface.vecPoints[tri[e]];
                const FEL_vector3<float>& q = surface.vecPoints[tri[(e + 1) % 3]];
                const double dp = double(p[a]) - dblPlane, dq = double(q[a]) - dblPlane;
                if ((dp <= 0) == (dq <= 0)) continue;
                const double t = dp / (dp - dq);
                seg[n][0] = p[u] + (double(q[u]) - p[u]) * t;
                seg[n][1] = p[v] + (double(q[v]) - p[v]) * t;
                ++n;
            }
            if (n == 2)
                canvas.Line(view.X(seg[0][0]), view.Y(seg[0][1]), view.X(seg[1][0]),
                            view.Y(seg[1][1]), intWidth, g_rgbBodyOutline);
        }
    }
}

// A disc's cut by the plane: a circle when the plane crosses its thickness across its axis, a
// rectangle (its thickness by the chord) when the plane runs along its axis within its radius.
void DrawRotors(Canvas& canvas, const SliceView& view, const InspectRun& run,
                const SlicePlane& plane) {
    const int a = plane.intAxis, u = view.AxisU(), v = view.AxisV();
    const double dblPlane =
        0.5 * (double(run.vecAxes[a][plane.intCell]) + run.vecAxes[a][plane.intCell + 1]);
    const double dblPi = 3.14159265358979323846;
    for (const InspectRotor& rotor : run.vecRotors) {
        const double d = std::fabs(dblPlane - rotor.v3fCentre[a]);
        const double cu = rotor.v3fCentre[u], cv = rotor.v3fCentre[v];
        if (rotor.intAxis == a) {
            if (d > rotor.dblHalfThickness) continue;
            const int intSteps = 180;
            for (int n = 0; n < intSteps; ++n) {
                const double t0 = 2 * dblPi * n / intSteps, t1 = 2 * dblPi * (n + 1) / intSteps;
                canvas.Line(view.X(cu + rotor.dblRadius * std::cos(t0)),
                            view.Y(cv + rotor.dblRadius * std::sin(t0)),
                            view.X(cu + rotor.dblRadius * std::cos(t1)),
                            view.Y(cv + rotor.dblRadius * std::sin(t1)), 2, g_rgbRotorDisc);
            }
            continue;
        }
        if (d > rotor.dblRadius) continue;
        const double dblChord = std::sqrt(rotor.dblRadius * rotor.dblRadius - d * d);
        const double hu = u == rotor.intAxis ? rotor.dblHalfThickness : dblChord;
        const double hv = v == rotor.intAxis ? rotor.dblHalfThickness : dblChord;
        const double x0 = view.X(cu - hu), x1 = view.X(cu + hu);
        const double y0 = view.Y(cv - hv), y1 = view.Y(cv + hv);
        canvas.Line(x0, y0, x1, y0, 2, g_rgbRotorDisc);
        canvas.Line(x1, y0, x1, y1, 2, g_rgbRotorDisc);
        canvas.Line(x1, y1, x0, y1, 2, g_rgbRotorDisc);
        canvas.Line(x0, y1, x0, y0, 2, g_rgbRotorDisc);
    }
}

// A step of 1, 2 or 5 times a power of ten, at least dbl.
double RoundStep(double dbl) {
    const double dblPower = std::pow(10.0, std::floor(std::log10(dbl)));
    for (double dblFactor : {1.0, 2.0, 5.0})
        if (dblFactor * dblPower >= dbl) return dblFactor * dblPower;
    return 10 * dblPower;
}

// The frame round the picture, with coordinate marks and their values below it and left of it.
void DrawFrameAndCoordinates(Canvas& canvas, const SliceView& view) {
    const int left = view.Column(view.Low(0)), right = view.Column(view.High(0));
    const int top = view.Row(view.High(1)), bottom = view.Row(view.Low(1));
    canvas.Fill(left - 1, top - 1, right + 2, top, s_rgbText);
    canvas.Fill(left - 1, bottom + 1, right + 2, bottom + 2, s_rgbText);
    canvas.Fill(left - 1, top - 1, left, bottom + 2, s_rgbText);
    canvas.Fill(right + 1, top - 1, right + 2, bottom + 2, s_rgbText);
    for (int s = 0; s < 2; ++s) {
        const double dblLow = view.Low(s), dblHigh = view.High(s);
        const int intPixels = s == 0 ? right - left : bottom - top;
        if (!(dblHigh > dblLow) || intPixels <= 0) continue;
        const double dblStep = RoundStep((dblHigh - dblLow) * s_intTickGap / intPixels);
        for (double n = std::ceil(dblLow / dblStep); n * dblStep <= dblHigh; ++n) {
            const std::string strValue = Number(n * dblStep + 0.0);  // no "-0"
            const int intChars = static_cast<int>(strValue.size()) * 6 * s_intGlyphScale;
            if (s == 0) {
                const int x = view.Column(n * dblStep);
                canvas.Fill(x, bottom + 2, x + 1, bottom + 8, s_rgbText);
                canvas.Text(x - intChars / 2, bottom + 12, strValue, s_rgbText);
            } else {
                const int y = view.Row(n * dblStep);
                canvas.Fill(left - 7, y, left - 1, y + 1, s_rgbText);
                canvas.Text(left - 10 - intChars, y - 7, strValue, s_rgbText);
            }
        }
    }
}

}  // namespace

SlicePlane MiddleSlicePlane(const InspectRun& run, int intAxis) {
    return SlicePlane{intAxis, run.Cells(intAxis) / 2};
}

SlicePlane ParseSlicePlane(const InspectRun& run, const std::string& strText) {
    const std::string strLetters = "ijkxyz";
    const size_t pos = strText.size() > 2 && strText[1] == '='
                           ? strLetters.find(std::tolower(strText[0]))
                           : std::string::npos;
    if (pos == std::string::npos)
        throw InspectError("--plane " + strText + ": expected i=N, j=N, k=N, x=V, y=V or z=V");
    SlicePlane plane;
    plane.intAxis = static_cast<int>(pos % 3);
    const char* szValue = strText.c_str() + 2;
    char* end = nullptr;
    if (pos < 3) {
        const long intIndex = std::strtol(szValue, &end, 10);
        if (*end != '\0' || intIndex < 1 || intIndex > run.Cells(plane.intAxis))
            throw InspectError("--plane " + strText + ": the index must be 1 to " +
                               std::to_string(run.Cells(plane.intAxis)));
        plane.intCell = static_cast<int>(intIndex - 1);
    } else {
        const double dbl = std::strtod(szValue, &end);
        plane.intCell = *end == '\0' ? CellOfCoordinate(run.vecAxes[plane.intAxis], dbl) : -1;
        if (plane.intCell < 0)
            throw InspectError("--plane " + strText + ": the coordinate must lie in " +
                               Number(run.vecAxes[plane.intAxis].front()) + " to " +
                               Number(run.vecAxes[plane.intAxis].back()));
    }
    return plane;
}

SliceView::SliceView(const InspectRun& run, const SlicePlane& plane, bool blnWhole)
    : m_intU(plane.intAxis == 0 ? 1 : 0), m_intV(plane.intAxis == 2 ? 1 : 2) {
    const int axes[2] = {m_intU, m_intV};
    for (int s = 0; s < 2; ++s) {
        m_dblLow[s] = run.vecAxes[axes[s]].front();
        m_dblHigh[s] = run.vecAxes[axes[s]].back();
    }
    double dblBox[2][2];
    if (!blnWhole && BodiesBox(run, axes, dblBox)) {
        const double dblMargin =
            s_dblBodyMargin * std::max(dblBox[0][1] - dblBox[0][0], dblBox[1][1] - dblBox[1][0]);
        for (int s = 0; s < 2; ++s) {
            m_dblLow[s] = std::max(m_dblLow[s], dblBox[s][0] - dblMargin);
            m_dblHigh[s] = std::min(m_dblHigh[s], dblBox[s][1] + dblMargin);
        }
    }
    const double dblExtU = std::max(m_dblHigh[0] - m_dblLow[0], 1e-30);
    const double dblExtV = std::max(m_dblHigh[1] - m_dblLow[1], 1e-30);
    // Enough pixels for s_intCellPixels a cell, within bounds; a thin domain gets its short side
    // widened to s_intShortSide while its long side stays within s_intLongestSide.
    const int intCells = std::max(CellsWithin(run.vecAxes[m_intU], m_dblLow[0], m_dblHigh[0]),
                                  CellsWithin(run.vecAxes[m_intV], m_dblLow[1], m_dblHigh[1]));
    const int intSide = std::clamp(s_intCellPixels * intCells, s_intPictureSide, s_intLargestSide);
    m_dblScale = intSide / std::max(dblExtU, dblExtV);
    if (std::min(dblExtU, dblExtV) * m_dblScale < s_intShortSide)
        m_dblScale = std::min(s_intShortSide / std::min(dblExtU, dblExtV),
                              s_intLongestSide / std::max(dblExtU, dblExtV));
    m_intWidth = static_cast<int>(std::lround(dblExtU * m_dblScale)) + s_intLeft + s_intMargin + 1;
    m_intHeight =
        static_cast<int>(std::lround(dblExtV * m_dblScale)) + s_intMargin + s_intBottom + 1;
}

double SliceView::X(double u) const {
    return s_intLeft + (u - m_dblLow[0]) * m_dblScale;
}

double SliceView::Y(double v) const {
    return s_intMargin + (m_dblHigh[1] - v) * m_dblScale;
}

int SliceView::Column(double u) const {
    return static_cast<int>(std::lround(X(u)));
}

int SliceView::Row(double v) const {
    return static_cast<int>(std::lround(Y(v)));
}

std::string SliceFileName(const SlicePlane& plane) {
    return std::string("slice_") + s_szIndex[plane.intAxis] + std::to_string(plane.intCell + 1) +
           ".png";
}

SlicePlane LeakSlicePlane(const BodyLeak& leak) {
    const auto& last = leak.vecPath.back();
    const auto& before = leak.vecPath[leak.vecPath.size() >= 2 ? leak.vecPath.size() - 2 : 0];
    int intStep = 0;
    while (intStep < 2 && before[intStep] == last[intStep]) ++intStep;
    const int intAxis = (intStep + 1) % 3;
    return SlicePlane{intAxis, last[intAxis]};
}

void WriteSlicePicture(const InspectRun& run, const std::vector<BodyLeak>& vecLeaks,
                       const SlicePlane& plane, const std::string& strPath, bool blnWhole) {
    const SliceView view(run, plane, blnWhole);
    const int a = plane.intAxis, u = view.AxisU(), v = view.AxisV();
    const double dblPlane =
        0.5 * (double(run.vecAxes[a][plane.intCell]) + run.vecAxes[a][plane.intCell + 1]);
    long intBlockedHere = 0, intLeakedHere = 0;
    const std::vector<char> vecKinds =
        CellKinds(run, vecLeaks, plane, u, v, intBlockedHere, intLeakedHere);

    const std::string strLine1 =
        std::string("PLANE ") + s_szIndex[a] + " = " + std::to_string(plane.intCell + 1) + " OF " +
        std::to_string(run.Cells(a)) + ", " + s_szAxis[a] + " = " + Number(dblPlane) + "   " +
        s_szAxis[u] + " TO THE RIGHT, " + s_szAxis[v] + " UP";
    const std::string strLine2 =
        "GRID " + std::to_string(run.Cells(0)) + " X " + std::to_string(run.Cells(1)) + " X " +
        std::to_string(run.Cells(2)) + " CELLS, " + std::to_string(run.vecBlocked.size()) +
        " BLOCKED, " + std::to_string(intBlockedHere) + " IN THIS PLANE" +
        (intLeakedHere ? ", " + std::to_string(intLeakedHere) + " LEAKED" : "");
    const size_t intLegendChars = std::max(strLine1.size(), strLine2.size()) + 2;
    const int intLegendWidth =
        2 * s_intMargin + static_cast<int>(intLegendChars) * 6 * s_intGlyphScale;
    Canvas canvas(std::max(view.Width(), intLegendWidth),
                  view.Height() + s_intLegendLines * s_intLineHeight + s_intMargin);

    const int left = view.Column(view.Low(0)), right = view.Column(view.High(0));
    const int top = view.Row(view.High(1)), bottom = view.Row(view.Low(1));
    canvas.Clip(left, top, right + 1, bottom + 1);
    DrawCells(canvas, view, run, vecKinds);
    const bool blnThinned = DrawGridLines(canvas, view, run);
    // On fine grids a thinner outline leaves the cells beside it in sight.
    const double dblCellPixels =
        view.Scale() * (view.High(0) - view.Low(0)) /
        std::max(1, CellsWithin(run.vecAxes[u], view.Low(0), view.High(0)));
    DrawOutlines(canvas, view, run, plane, dblCellPixels >= 8 ? 2 : 1);
    DrawRotors(canvas, view, run, plane);
    canvas.Unclip();
    DrawFrameAndCoordinates(canvas, view);

    // The legend.
    const int y0 = view.Height();
    canvas.Text(s_intMargin, y0, strLine1, s_rgbText);
    canvas.Text(s_intMargin, y0 + s_intLineHeight, strLine2, s_rgbText);
    const std::string strOutline = "BODY OUTLINE, " + std::to_string(run.vecBodies.size()) +
                                   (run.vecBodies.size() == 1 ? " BODY" : " BODIES");
    const std::pair<const unsigned char*, std::string> items[] = {
        {g_rgbBlockedFill, "BLOCKED CELL"},
        {g_rgbBodyOutline, strOutline},
        {g_rgbLeakedFill, "LEAKED CELL"},
        {g_rgbLeakPath, "LEAK PATH"},
        {g_rgbRotorDisc, "ROTOR DISC"},
        {nullptr, blnThinned ? "SOME GRID LINES LEFT OUT" : ""}};
    for (int n = 0; n < 6; ++n) {
        const int y = y0 + (2 + n / 2) * s_intLineHeight;
        int x = s_intMargin + (n % 2) * (intLegendWidth / 2 - s_intMargin);
        if (items[n].first == g_rgbBodyOutline || items[n].first == g_rgbRotorDisc)
            canvas.Fill(x, y + 6, x + 14, y + 9, items[n].first);
        else if (items[n].first)
            canvas.Fill(x, y, x + 14, y + 14, items[n].first);
        canvas.Text(items[n].first ? x + 20 : x, y, items[n].second, s_rgbText);
    }
    canvas.WritePng(strPath);
}
