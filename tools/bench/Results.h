#pragma once

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace bench {

double median(std::vector<double> values);

/// Keeps every figure of one measurement in a file of its own and prints the medians.
///
/// What is aimed at goes into a file beside it, with what came out.
class Results
{
public:
    /// The files are written anew: `folder`/`measurement`.csv and `folder`/`measurement` aims.csv.
    Results(const std::string &folder, const std::string &measurement);

    void add(int round, const std::string &program, const std::string &quantity, double value);

    /// One line: the median of a program's figures, with the smallest and the largest.
    void print(const std::string &program, const std::string &quantity) const;
    /// Prints and keeps how often the second program's median goes into the first's, beside the
    /// most that is aimed at.
    void judgeRatio(const std::string &quantity, const std::string &program,
                    const std::string &floor, double aim);
    /// Prints and keeps the largest figure, beside the most that is aimed at.
    void judgeLargest(const std::string &program, const std::string &quantity, double aim);

private:
    using Key = std::pair<std::string, std::string>;

    void judge(const Key &key, const std::string &what, double figure, double aim);

    std::ofstream file;
    std::ofstream aims;
    std::map<Key, std::vector<double>> figures;
};

} // namespace bench
