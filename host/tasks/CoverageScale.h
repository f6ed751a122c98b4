#pragma once
#include <QColor>

#include <vector>

/// Values from one, included, to another one, not included, and the colour that they are painted in.
struct CoverageStep
{
    double from = 0.0;
    double to = 0.0; ///< infinite for the last step of the photos
    QColor color;
};

/// Discrete colours for a measure of coverage, told apart by people who are colour-blind, too. The first step
/// is that of places that no photo shows. A plain value.
struct CoverageScale
{
    std::vector<CoverageStep> steps;

    /// For numbers of photos: the same steps for all plans, wider towards more of them.
    static CoverageScale OfPhotos();
    /// For metres of ground a pixel, from the least to the most: steps of round numbers. Less than one and a
    /// half tenths of a millimetre are one step.
    static CoverageScale OfSample(double least, double most);

    /// Number of the step of a value, 0 or more.
    int StepOf(double value) const;
};
