#include <osgEarthSymbology/Query>

namespace osgEarth::Symbology {
Query::Query(const Config& conf)
{
    conf.getIfSet("expr", _expression);
    conf.getIfSet("orderby", _orderby);
    if (const Config* box = conf.child_ptr("extent"))
        _bounds = Bounds(box->value("xmin", 0.0), box->value("ymin", 0.0), box->value("xmax", 0.0),
                         box->value("ymax", 0.0));
}

Query Query::combineWith(const Query& rhs) const
{
    Query merged(*this);
    if (_expression.isSet() && rhs._expression.isSet())
        merged._expression = "(" + _expression.value() + ") AND (" + rhs._expression.value() + ")";
    else if (rhs._expression.isSet())
        merged._expression = rhs._expression;
    if (rhs._bounds.isSet())
        merged._bounds = rhs._bounds;
    if (rhs._orderby.isSet())
        merged._orderby = rhs._orderby;
    return merged;
}

Config Query::getConfig() const
{
    Config conf("query");
    conf.updateIfSet("expr", _expression);
    conf.updateIfSet("orderby", _orderby);
    if (_bounds.isSet()) {
        Config box("extent");
        box.add("xmin", _bounds->xMin());
        box.add("ymin", _bounds->yMin());
        box.add("xmax", _bounds->xMax());
        box.add("ymax", _bounds->yMax());
        conf.add(box);
    }
    return conf;
}
} // namespace osgEarth::Symbology
