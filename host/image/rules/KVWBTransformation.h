#pragma once

/// The names of what white balance can do.
class KVWBTransformation
{
public:
    /// Records hold these as plain numbers, which may be any.
    enum BalanceFunction : int
    {
        Auto = 0,          ///< takes the cast of the light away
        Overexposure = 1,  ///< darkens what is too bright
        Underexposure = 2, ///< brightens what is too dark
    };
};
