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
const int s_intPictureSide = 800;  // the longer side of the grid's picture, in pixels
const int s_intGlyphScale = 2;
const int s_intLineHeight = 9 * s_intGlyphScale;
const int s_intLegendLines = 4;
const int s_intMinLineGap = 6;  // grid lines closer than this to the last one drawn are dropped

const unsigned char s_rgbWhite[3] = {255, 255, 255};
const unsigned char s_rgbGridLine[3] = {185, 185, 185};
const unsigned char s_rgbGridLineOnFill[3] = {45, 75, 135};
const unsigned char s_rgbText[3] = {20, 20, 20};

const char* const s_szAxis = "XYZ";
const char* const s_szIndex = "IJK";

class Canvas {
  public:
    Canvas(int w, int h) : m_w(w), m_h(h), m_vecRgb(static_cast<size_t>(w) * h * 3, 255) {}
    int Width() const { return m_w; }
    int Height() const { return m_h; }
    unsigned char* At(int x, int y) { return &m_vecRgb[(static_cast<size_t>(y) * m_w + x) * 3]; }
    void Set(int x, int y, const unsigned char* rgb) {
        if (x >= 0 && y >= 0 && x < m_w && y < m_h) std::copy(rgb, rgb + 3, At(x, y));
    }
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

SliceView::SliceView(const InspectRun& run, const SlicePlane& plane)
    : m_intU(plane.intAxis == 0 ? 1 : 0), m_intV(plane.intAxis == 2 ? 1 : 2) {
    const std::vector<float>& vecU = run.vecAxes[m_intU];
    const std::vector<float>& vecV = run.vecAxes[m_intV];
    const double dblExtU = std::max(double(vecU.back()) - vecU.front(), 1e-30);
    const double dblExtV = std::max(double(vecV.back()) - vecV.front(), 1e-30);
    m_dblScale = s_intPictureSide / std::max(dblExtU, dblExtV);
    m_dblU0 = vecU.front();
    m_dblV1 = vecV.back();
    m_intWidth = static_cast<int>(std::lround(dblExtU * m_dblScale)) + 2 * s_intMargin + 1;
    m_intHeight = static_cast<int>(std::lround(dblExtV * m_dblScale)) + 2 * s_intMargin + 1;
}

double SliceView::X(double u) const {
    return s_intMargin + (u - m_dblU0) * m_dblScale;
}

double SliceView::Y(double v) const {
    return s_intMargin + (m_dblV1 - v) * m_dblScale;
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
                       const SlicePlane& plane, const std::string& strPath) {
    const SliceView view(run, plane);
    const int a = plane.intAxis, u = view.AxisU(), v = view.AxisV();
    const std::vector<float>& vecU = run.vecAxes[u];
    const std::vector<float>& vecV = run.vecAxes[v];
    const double dblPlane =
        0.5 * (double(run.vecAxes[a][plane.intCell]) + run.vecAxes[a][plane.intCell + 1]);

    const std::string strLine1 =
        std::string("PLANE ") + s_szIndex[a] + " = " + std::to_string(plane.intCell + 1) + " OF " +
        std::to_string(run.Cells(a)) + ", " + s_szAxis[a] + " = " + Number(dblPlane) + "   " +
        s_szAxis[u] + " TO THE RIGHT, " + s_szAxis[v] + " UP";
    long intHere = 0;
    std::vector<char> vecBlocked(static_cast<size_t>(run.Cells(u)) * run.Cells(v), 0);
    for (const FEL_vector3<int>& v3i : run.vecBlocked) {
        const int idx[3] = {v3i.x - 1, v3i.y - 1, v3i.z - 1};
        if (idx[a] != plane.intCell) continue;
        vecBlocked[static_cast<size_t>(idx[v]) * run.Cells(u) + idx[u]] = 1;
        ++intHere;
    }
    // Leaked cells over blocked ones (they never are both), the paths over all.
    long intLeakedHere = 0;
    auto mark = [&](const std::vector<std::array<int, 3>>& vecCells, char chKind) {
        for (const auto& cell : vecCells)
            if (cell[a] == plane.intCell) {
                vecBlocked[static_cast<size_t>(cell[v]) * run.Cells(u) + cell[u]] = chKind;
                intLeakedHere += chKind == 2;
            }
    };
    for (const BodyLeak& leak : vecLeaks) mark(leak.vecLeaked, 2);
    for (const BodyLeak& leak : vecLeaks) mark(leak.vecPath, 3);
    const std::string strLine2 =
        "GRID " + std::to_string(run.Cells(0)) + " X " + std::to_string(run.Cells(1)) + " X " +
        std::to_string(run.Cells(2)) + " CELLS, " + std::to_string(run.vecBlocked.size()) +
        " BLOCKED, " + std::to_string(intHere) + " IN THIS PLANE" +
        (intLeakedHere ? ", " + std::to_string(intLeakedHere) + " LEAKED" : "");
    bool blnThinned = false;
    std::vector<int> vecColumns, vecRows;
    for (float f : vecU) vecColumns.push_back(view.Column(f));
    for (float f : vecV) vecRows.push_back(view.Row(f));
    vecColumns = ShownLines(vecColumns, blnThinned);
    vecRows = ShownLines(vecRows, blnThinned);
    const std::string strLine3 = "BODY OUTLINE, " + std::to_string(run.vecBodies.size()) +
                                 (run.vecBodies.size() == 1 ? " BODY" : " BODIES") +
                                 (blnThinned ? "; SOME GRID LINES LEFT OUT" : "");
    const size_t intLegendChars =
        std::max({strLine1.size(), strLine2.size(), strLine3.size() + 22});
    const int intLegendWidth =
        2 * s_intMargin + static_cast<int>(intLegendChars) * 6 * s_intGlyphScale;
    Canvas canvas(std::max(view.Width(), intLegendWidth),
                  view.Height() + s_intLegendLines * s_intLineHeight + s_intMargin);

    const unsigned char* const rgbKind[4] = {nullptr, g_rgbBlockedFill, g_rgbLeakedFill,
                                             g_rgbLeakPath};
    for (int j = 0; j < run.Cells(v); ++j)
        for (int i = 0; i < run.Cells(u); ++i)
            if (const char chKind = vecBlocked[static_cast<size_t>(j) * run.Cells(u) + i])
                canvas.Fill(view.Column(vecU[i]), view.Row(vecV[j + 1]), view.Column(vecU[i + 1]),
                            view.Row(vecV[j]), rgbKind[int(chKind)]);

    // Grid lines, one pixel wide, darker over blocked cells so that their cells stay countable.
    auto gridLine = [&](int x0, int y0, int x1, int y1) {
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                canvas.Set(x, y,
                           canvas.Is(x, y, g_rgbBlockedFill) ? s_rgbGridLineOnFill : s_rgbGridLine);
    };
    const int top = view.Row(vecV.back()), bottom = view.Row(vecV.front());
    const int left = view.Column(vecU.front()), right = view.Column(vecU.back());
    for (int x : vecColumns) gridLine(x, top, x, bottom);
    for (int y : vecRows) gridLine(left, y, right, y);

    // Each triangle that the plane cuts leaves one segment of the body's outline.
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
                            view.Y(seg[1][1]), 2, g_rgbBodyOutline);
        }
    }

    // The legend, with the axes of the picture.
    const int y0 = view.Height();
    canvas.Text(s_intMargin, y0, strLine1, s_rgbText);
    canvas.Text(s_intMargin, y0 + s_intLineHeight, strLine2, s_rgbText);
    int x = s_intMargin;
    const int y2 = y0 + 2 * s_intLineHeight;
    canvas.Fill(x, y2, x + 14, y2 + 14, g_rgbBlockedFill);
    x = canvas.Text(x + 20, y2, "BLOCKED CELL", s_rgbText) + 24;
    canvas.Fill(x, y2 + 6, x + 14, y2 + 9, g_rgbBodyOutline);
    canvas.Text(x + 20, y2, strLine3, s_rgbText);
    const int y3 = y2 + s_intLineHeight;
    canvas.Fill(s_intMargin, y3, s_intMargin + 14, y3 + 14, g_rgbLeakedFill);
    x = canvas.Text(s_intMargin + 20, y3, "LEAKED CELL", s_rgbText) + 24;
    canvas.Fill(x, y3, x + 14, y3 + 14, g_rgbLeakPath);
    canvas.Text(x + 20, y3, "LEAK PATH", s_rgbText);
    canvas.WritePng(strPath);
}
