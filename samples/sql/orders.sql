/* Orders and their totals */
CREATE TABLE dbo.Orders (
    OrderID INT NOT NULL PRIMARY KEY,
    CustomerID INT NOT NULL,
    OrderDate DATETIME NOT NULL,
    Amount DECIMAL(12, 2) NOT NULL
);

SELECT c.Name, COUNT(*) AS OrderCount, SUM(o.Amount) AS Total
FROM dbo.Orders AS o
INNER JOIN dbo.Customers AS c ON c.CustomerID = o.CustomerID
GROUP BY c.Name
HAVING SUM(o.Amount) > 1000;

UPDATE dbo.Orders SET Amount = Amount * 1.1 WHERE OrderDate < '2020-01-01';
