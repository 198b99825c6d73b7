#include "TvMath.h"

double TvMath::floor(double x) { return std::floor(x); }

double TvMath::ceil(double x) { return std::ceil(x); }

double TvMath::fabs(double x) { return std::fabs(x); }

bool TvMath::isPositive(double x, double tol) { return x > tol; }

bool TvMath::isNegative(double x, double tol) { return x < -tol; }

bool TvMath::isZero(double x, double tol) { return !isPositive(x, tol) && !isNegative(x, tol); }

bool TvMath::isEqual(double a, double b, double tol) { return isZero(a - b, tol); }

template const int& TvMath::max<int>(const int&, const int&);
template double TvMath::asInt<double>(const double&);
template double TvMath::fixAngle<double>(const double&);
template double TvMath::pow<double>(double, int);
