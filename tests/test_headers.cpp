// The headers that all tests begin with are compiled along with this file.
