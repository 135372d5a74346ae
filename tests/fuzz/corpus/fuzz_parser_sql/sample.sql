-- Shapes and their sides
CREATE TABLE shapes (
  id INTEGER PRIMARY KEY,
  name VARCHAR(40) NOT NULL,
  sides INTEGER DEFAULT 3
);

/* Every polygon with more
   than three sides */
SELECT name, sides
  FROM shapes
 WHERE sides > 3 AND name <> 'circle'
 ORDER BY sides DESC;

UPDATE shapes SET sides = :newSides WHERE id = 12;
