// Hand-built generator bodies for tests: cut-plane bodies and cuboids with their boxes.
#pragma once

#include <array>
#include <deque>
#include <utility>
#include <vector>

#include "gdrecords.h"

class BodyBuilder {
  public:
    using Polygon = std::vector<std::pair<double, double>>;

    // A cut-plane body of type 0, 1 or 2 with one polygon per cut plane, in the order given.
    Body cut_body(int type, const std::vector<std::pair<double, Polygon>>& cuts,
                  std::array<double, 3> bdyMin, std::array<double, 3> bdyMax) {
        Body body = plain_body(type, bdyMin, bdyMax);
        std::vector<BodyCut>& stored = cuts_.emplace_back();
        for (const auto& [posn, poly] : cuts) {
            std::vector<double>& pts = pts_.emplace_back();
            for (const auto& [q1, q2] : poly) {
                pts.push_back(q1);
                pts.push_back(q2);
            }
            BodyCut cut{};
            cut.posn = posn;
            cut.pts = reinterpret_cast<double(*)[2]>(pts.data());
            cut.nPts = static_cast<int>(poly.size());
            stored.push_back(cut);
        }
        body.cuts = stored.data();
        body.nCuts = static_cast<int>(stored.size());
        return body;
    }

    // A body of any other type with just its box (a cuboid also gets its corners).
    Body plain_body(int type, std::array<double, 3> bdyMin, std::array<double, 3> bdyMax) {
        Body body{};
        body.name = const_cast<char*>("body");
        body.type = type;
        body.usedInSolver = 1;
        body.fullSpanUsedInSolver = 1;
        body.mirrorAxis = 3;
        body.blockFraction = UNSET_DBL;
        for (int a = 0; a < 3; ++a) {
            body.bdyMin[a] = bdyMin[a];
            body.bdyMax[a] = bdyMax[a];
        }
        if (type == 3) {
            std::vector<double>& corners = pts_.emplace_back();
            corners = {bdyMin[0], bdyMin[1], bdyMin[2], bdyMax[0], bdyMax[1], bdyMax[2]};
            body.cuboid = corners.data();
        }
        return body;
    }

  private:
    std::deque<std::vector<double>> pts_;
    std::deque<std::vector<BodyCut>> cuts_;
};
