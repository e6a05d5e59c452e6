; What the theme is made of, one element a line.
background=waves.gif
rule=rule.gif
bullet=bullet.gif
style=theme.css
text=#d5dcf2
heading=#ffd873
link=#ffd873
visited=#e0c0ff
