#include "catalog/SelectionMask.h"

SelectionMask::SelectionMask(const RGBA32iImage& coverage, const QPoint& offset)
    : m_coverage(coverage.IsEmpty() ? RGBA32iImage(1, 1) : coverage), m_offset(offset)
{}
