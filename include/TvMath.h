// TvMath.h - comparisons with an explicit tolerance, and angles.
#ifndef TV_MATH_H
#define TV_MATH_H

#include "TvExport.h"

#include <cmath>

/// Services for floating-point numbers. Every tolerance is a parameter, there is no
/// default one.
///
/// **Errors**, **Memory**: none. **Threads**: no state.
///
///     TvMath::isEqual(width, 12.5, 1e-10);
///     double bearing = TvMath::fixAngle<double>(-0.5);       // 5.783...
class TV_OSBASE_API TvMath {
public:
    /// The C library's function of that name.
    static double floor(double x);
    /// The C library's function of that name.
    static double ceil(double x);
    /// The C library's function of that name.
    static double fabs(double x);

    /// x > tol.
    static bool isPositive(double x, double tol);
    /// x < -tol.
    static bool isNegative(double x, double tol);
    /// Neither positive nor negative by `tol`: the bounds count as zero, and so does NaN.
    static bool isZero(double x, double tol);
    /// isZero(a - b, tol).
    static bool isEqual(double a, double b, double tol);

    /// A reference to the larger one; to `b` when they are equal.
    template<class T>
    static const T& max(const T& a, const T& b)
    {
        return a > b ? a : b;
    }

    /// `x` without its fraction, exact beyond the range of int too. The sign of a zero
    /// result is not kept for -1 < x <= 0.
    template<class T>
    static T asInt(const T& x)
    {
        if (x > T(2147483647.0))
            return std::floor(x);
        if (x >= T(-2147483648.0))
            return static_cast<T>(static_cast<int>(x));
        return std::ceil(x);
    }

    /// The angle `a`, in radians, brought into [0, 2 pi). An angle so large that taking 1
    /// from it changes nothing has no direction any more and gives 0.
    template<class T>
    static T fixAngle(const T& a)
    {
        const T fullTurn = T(6.283185307179586);
        T turns = 0;
        if (a - T(1.0) != a)
            turns = a / fullTurn;
        T angle = (turns - asInt(turns)) * fullTurn;
        if (angle < T(0))
            angle += fullTurn;
        if (angle >= fullTurn)
            angle -= fullTurn;
        return angle;
    }

    /// std::pow() with a whole exponent.
    template<class T>
    static T pow(T base, int exponent)
    {
        return std::pow(base, static_cast<T>(exponent));
    }
};

extern template TV_OSBASE_API const int& TvMath::max<int>(const int&, const int&);
extern template TV_OSBASE_API double TvMath::asInt<double>(const double&);
extern template TV_OSBASE_API double TvMath::fixAngle<double>(const double&);
extern template TV_OSBASE_API double TvMath::pow<double>(double, int);

#endif
