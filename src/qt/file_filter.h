#pragma once

#include <QStringList>

#include <string_view>

namespace marlune::qt {

// The forms write a file filter as pairs of a description and its patterns, all joined by '|'
// ("Marlune Program Files (*.dat)|*.dat", patterns split by ';'). Qt wants one entry per pair,
// "Description (*.a *.b)". A description that already ends in its patterns keeps them once.
QStringList QtNameFilters(std::string_view filter);

} // namespace marlune::qt
