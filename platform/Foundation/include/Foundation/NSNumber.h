#pragma once

#include <Foundation/NSObject.h>

/// A truth value, an integer or a real number as an object, which remembers which of them it is.
///
/// Immutable; any thread.
class KORVID_EXPORT NSNumber : public NSObject {
public:
    /// What a number was made from.
    enum class Kind { Boolean, Integer, Double };

    /// A truth value.
    static RetainPtr<NSNumber> numberWithBool(bool value);
    /// An integer.
    static RetainPtr<NSNumber> numberWithInteger(NSInteger value);
    /// A real number, which may be infinite or NaN.
    static RetainPtr<NSNumber> numberWithDouble(double value);

    /// What the number was made from.
    Kind kind() const { return _kind; }
    /// True for any number but 0.
    bool boolValue() const;
    /// A real is truncated toward zero and clamped to the range; NaN gives 0.
    NSInteger integerValue() const;
    /// An integer beyond 2^53 is rounded to the nearest double.
    double doubleValue() const;
    /// "1" and "0" for truth values, digits for integers, for reals the shortest text that reads back as the
    /// same double.
    NSString stringValue() const;

    /// True for another number of the same value, whatever the kinds: 1, 1.0 and true are equal. NaN is
    /// equal to NaN.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// `stringValue()`.
    NSString description() const override;

protected:
    ~NSNumber() override;

private:
    explicit NSNumber(bool value);
    explicit NSNumber(NSInteger value);
    explicit NSNumber(double value);

    Kind _kind;
    union {
        NSInteger _integer; ///< also 0 and 1 for truth values
        double _double;
    };
};
