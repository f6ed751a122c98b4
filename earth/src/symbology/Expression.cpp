#include <algorithm>
#include <cctype>
#include <cmath>
#include <locale>
#include <osgEarth/StringUtils>
#include <osgEarthSymbology/Expression>
#include <sstream>

namespace osgEarth::Symbology {
/// Recursive descent over sum := product (+|- product)*, product := factor
/// (*|/|% factor)*, writing the expression in postfix order.
class NumericExpressionParser
{
public:
    using Op = NumericExpression::Op;

    explicit NumericExpressionParser(NumericExpression& target) : _target(target), _text(target._src) {}

    bool run() { return sum(0) && (skipBlanks(), _at == _text.size()); }

private:
    static const int kDeepest = 100; // brackets in brackets; limits the stack that hostile text can use

    void skipBlanks()
    {
        while (_at < _text.size() && std::isspace(static_cast<unsigned char>(_text[_at])))
            ++_at;
    }
    bool take(char c)
    {
        skipBlanks();
        if (_at >= _text.size() || _text[_at] != c)
            return false;
        ++_at;
        return true;
    }
    void emit(Op op, double value = 0.0) { _target._postfix.push_back({op, value}); }

    bool sum(int depth)
    {
        if (depth > kDeepest || !product(depth))
            return false;
        for (;;) {
            const Op op = take('+') ? Op::Add : take('-') ? Op::Subtract : Op::Operand;
            if (op == Op::Operand)
                return true;
            if (!product(depth))
                return false;
            emit(op);
        }
    }

    bool product(int depth)
    {
        if (!factor(depth))
            return false;
        for (;;) {
            const Op op = take('*')   ? Op::Multiply
                          : take('/') ? Op::Divide
                          : take('%') ? Op::Modulo
                                      : Op::Operand;
            if (op == Op::Operand)
                return true;
            if (!factor(depth))
                return false;
            emit(op);
        }
    }

    bool factor(int depth)
    {
        if (depth > kDeepest)
            return false;
        if (take('('))
            return sum(depth + 1) && take(')');
        if (take('-')) {
            emit(Op::Operand, 0.0);
            if (!factor(depth + 1))
                return false;
            emit(Op::Subtract);
            return true;
        }
        if (take('['))
            return attribute();
        if (word("min"))
            return pair(Op::Min, depth);
        if (word("max"))
            return pair(Op::Max, depth);
        return number();
    }

    bool word(const char* name)
    {
        skipBlanks();
        const std::string wanted = std::string(name) + "(";
        if (toLower(_text.substr(_at, wanted.size())) != wanted)
            return false;
        _at += wanted.size();
        return true;
    }

    bool pair(Op op, int depth)
    {
        if (!sum(depth + 1) || !take(',') || !sum(depth + 1) || !take(')'))
            return false;
        emit(op);
        return true;
    }

    bool attribute()
    {
        const size_t end = _text.find(']', _at);
        if (end == std::string::npos)
            return false;
        const std::string name = trim(_text.substr(_at, end - _at));
        _at = end + 1;
        auto& vars = _target._vars;
        auto known = std::find_if(vars.begin(), vars.end(), [&](const auto& v) { return v.first == name; });
        if (known == vars.end()) {
            vars.emplace_back(name, static_cast<unsigned>(vars.size()));
            known = vars.end() - 1;
        }
        emit(Op::Attribute, known->second);
        return !name.empty();
    }

    bool number()
    {
        skipBlanks();
        size_t end = _at;
        while (end < _text.size() && (std::isdigit(static_cast<unsigned char>(_text[end])) ||
                                      _text[end] == '.' || _text[end] == 'e' || _text[end] == 'E' ||
                                      ((_text[end] == '-' || _text[end] == '+') && end > _at &&
                                       (_text[end - 1] == 'e' || _text[end - 1] == 'E'))))
            ++end;
        std::istringstream in(_text.substr(_at, end - _at));
        in.imbue(std::locale::classic());
        double value = 0.0;
        if (!(in >> value) || in.peek() != std::istringstream::traits_type::eof())
            return false;
        _at = end;
        emit(Op::Operand, value);
        return true;
    }

    NumericExpression& _target;
    const std::string _text;
    size_t _at = 0;
};

NumericExpression::NumericExpression(const std::string& expr) : _src(expr)
{
    _valid = NumericExpressionParser(*this).run();
    if (!_valid)
        _postfix.clear();
    _values.resize(_vars.size(), 0.0);
}

NumericExpression::NumericExpression(double staticValue)
{
    setLiteral(staticValue);
}

void NumericExpression::setLiteral(double staticValue)
{
    _src = osgEarth::toString(staticValue);
    _postfix = {{Op::Operand, staticValue}};
    _vars.clear();
    _values.clear();
    _valid = true;
}

void NumericExpression::set(const Variable& var, double value)
{
    if (var.second < _values.size())
        _values[var.second] = value;
}

double NumericExpression::eval() const
{
    std::vector<double> stack;
    for (const Atom& atom : _postfix) {
        if (atom.op == Op::Operand)
            stack.push_back(atom.value);
        else if (atom.op == Op::Attribute)
            stack.push_back(_values[static_cast<size_t>(atom.value)]);
        else {
            const double b = stack.back();
            stack.pop_back();
            double& a = stack.back();
            switch (atom.op) {
            case Op::Add:
                a += b;
                break;
            case Op::Subtract:
                a -= b;
                break;
            case Op::Multiply:
                a *= b;
                break;
            case Op::Divide:
                a = b != 0.0 ? a / b : 0.0;
                break;
            case Op::Modulo:
                a = b != 0.0 ? std::fmod(a, b) : 0.0;
                break;
            case Op::Min:
                a = std::min(a, b);
                break;
            default:
                a = std::max(a, b);
                break;
            }
        }
    }
    return stack.empty() ? 0.0 : stack.back();
}

StringExpression::StringExpression(const std::string& expr)
{
    setInfix(expr);
}

void StringExpression::setInfix(const std::string& expr)
{
    *this = StringExpression();
    _src = expr;
    const bool quoted = expr.find('"') != std::string::npos;
    bool inQuotes = false;
    std::string text;
    const auto flush = [&] {
        if (!text.empty())
            _pieces.push_back({false, text, 0});
        text.clear();
    };
    for (size_t i = 0; i < expr.size(); ++i) {
        const size_t close = expr[i] == '[' ? expr.find(']', i) : std::string::npos;
        if (expr[i] == '"')
            inQuotes = !inQuotes;
        else if (!inQuotes && close != std::string::npos) {
            flush();
            addVariable(trim(expr.substr(i + 1, close - i - 1)));
            i = close;
        } else if (inQuotes || !quoted)
            text += expr[i];
    }
    flush();
}

void StringExpression::setLiteral(const std::string& value)
{
    *this = StringExpression();
    _src = value;
    _pieces = {{false, value, 0}};
}

void StringExpression::addVariable(const std::string& name)
{
    auto known = std::find_if(_vars.begin(), _vars.end(), [&](const auto& v) { return v.first == name; });
    if (known == _vars.end()) {
        _vars.emplace_back(name, static_cast<unsigned>(_vars.size()));
        _values.emplace_back();
        known = _vars.end() - 1;
    }
    _pieces.push_back({true, name, known->second});
}

void StringExpression::set(const Variable& var, const std::string& value)
{
    if (var.second < _values.size())
        _values[var.second] = value;
}

void StringExpression::set(const std::string& varName, const std::string& value)
{
    for (const Variable& var : _vars)
        if (var.first == varName)
            set(var, value);
}

const std::string& StringExpression::eval() const
{
    _result.clear();
    for (const Piece& piece : _pieces)
        _result += piece.attribute ? _values[piece.slot] : piece.text;
    return _result;
}
} // namespace osgEarth::Symbology
